/* SPDX-License-Identifier: MIT */
/* Compiles the public header as C and reports the record layout that a C
   caller sees, so the C++ side can compare it with its own. */
#include <stddef.h>

#include "quarnel/cctapi.h"

size_t CHeaderContextSize(void) { return sizeof(CctContext); }
size_t CHeaderOutIgclOffset(void) { return offsetof(CctContext, outIgcl); }
size_t CHeaderPostGammaOffset(void) { return offsetof(CctContext, outNvPostGamma); }

/* Every export must be callable from C with the declared prototype. */
typedef int32_t (*CctApiFn)(uint32_t, CctContext*);
CctApiFn CHeaderCctApi(void) { return &CCTAPI; }
