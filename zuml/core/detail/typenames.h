/// Readable names of run-time types, for messages.
#pragma once

#include <string>
#include <typeinfo>

namespace zuml_detail {

/// The type's name as it is written in a source, such as "CTaskAddII<unsigned char>".
std::string TypeName(const std::type_info& type);

}  // namespace zuml_detail
