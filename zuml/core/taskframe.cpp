#include "zuml/core/taskframe.h"

#include <string>
#include <typeinfo>

#include "zuml/core/detail/typenames.h"
#include "zuml/core/xqdiagnostics.h"
#include "zuml/core/xqexception.h"

namespace zuml_detail {

void WaitForTasks(XQTask* const* tasks, int n) {
  // All are joined before anything else is done: what follows may throw, and no task may outlive
  // it.
  for (int i = 0; i < n; ++i) tasks[i]->Wait();
  const XQException* failure = nullptr;
  for (int i = 0; i < n; ++i) {
    if (const XQException* e = tasks[i]->Wait()) {
      XQDiagnostic(
          ("Error en CTask " + std::to_string(i) + " de tipo " + TypeName(typeid(*tasks[i])) + "\n")
              .c_str());
      failure = e;
    }
  }
  if (failure) throw XQException(*failure);
}

}  // namespace zuml_detail
