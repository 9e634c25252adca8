// Marks what a host's runtime library exports and a plug-in library imports.
#pragma once

#define OMBRIX_API __attribute__((visibility("default")))
