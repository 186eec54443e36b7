// How a detector asks a module of the suite.
#ifndef TYPESCOUT_DETECTORS_ASK_MODULE_H
#define TYPESCOUT_DETECTORS_ASK_MODULE_H

#include <memory>

#include "core/probe_context.h"
#include "host/library.h"

namespace typescout {

// Calls `question->Ask()`, which calls into a module. `question` holds all that the detector has
// taken. Where an exception of the module's leaves without running destructors, `question` is
// destroyed here, and what the rest of the call holds is released.
template <typename Question>
void AskModule(Question* question, const ProbeContext* probe) {
  struct Call {
    Question* question;
    const ProbeContext* probe;
  };
  Call call = {question, probe};
  TvnUtils::CallGuarded([](void* data) { static_cast<Call*>(data)->question->Ask(); },
                        [](void* data, bool runsDestructors) {
                          if (runsDestructors) return;
                          const Call& left = *static_cast<Call*>(data);
                          std::destroy_at(left.question);
                          ReleaseCall(left.probe);
                        },
                        &call);
}

}  // namespace typescout

#endif  // TYPESCOUT_DETECTORS_ASK_MODULE_H
