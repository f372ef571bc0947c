#pragma once

#include "framework/Picture.h"

// The program's pictures, each read from the resources folder once and kept. One that could not be read is
// nil and is tried again at the next use.

PictureRef logo64x64();
PictureRef paypal();
