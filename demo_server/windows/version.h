// The stand-in library's version, for KSDllVersion and for the version resource.
#pragma once

#define ORVC_DEMO_VERSION_MAJOR 1
#define ORVC_DEMO_VERSION_MINOR 0
#define ORVC_DEMO_VERSION_BUILD 1
#define ORVC_DEMO_VERSION_TEXT "1.0.0.1"
