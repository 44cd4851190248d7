#ifndef KESTRO_XMODULE_RLOG_H
#define KESTRO_XMODULE_RLOG_H

#include "kestro/xmodule/log.h"

// The library's own log lines carry this prefix, so they stand out in a tool's shared log.
#define RLOG(level) XLOG(level) << "[repo] "

#endif
