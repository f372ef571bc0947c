#pragma once

/// Tells assistive technology what our own widgets are: a wheel, a picture, a link.
void InstallAccessibility();
