// kmvc.h - all that a suite of the video-coding functions needs.

#ifndef RAKOVA_KMVC_H
#define RAKOVA_KMVC_H

#include "kelcore.h"
#include "kels.h"
#include "keli.h"
#include "kelvc.h"
#include "cperftest.h"
#include "km.h"
#include "kmnames.h"

KelLibraryVersion const *kmGetKelVersion_kelvc(); // null for a library that does not tell
void kmSetKelEnvironment();

// Every suite asks for the version; the report tells each text once.
[[maybe_unused]] static const bool regVersion_kelvc = rkRegKelVersion(kmGetKelVersion_kelvc);

#endif
