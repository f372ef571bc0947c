#pragma once

/// Tells assistive technology what our own widgets are: windows, wheels, pictures, links.
void InstallAccessibility();
