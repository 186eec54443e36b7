// For systems on which every exception runs destructors.
#include "host/library.h"

void TvnUtils::CallGuarded(void (*call)(void* data),
                           void (* /*left*/)(void* data, bool runsDestructors), void* data) {
  call(data);
}
