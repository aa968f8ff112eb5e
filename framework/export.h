// What is visible outside the library; everything else is hidden.
#pragma once

#define VEXLITE_EXPORT __attribute__((visibility("default")))
