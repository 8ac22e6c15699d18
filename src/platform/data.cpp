#include "platform/data.h"

namespace tabrixdb::platform {

TypeClass type_class(std::int32_t type) noexcept {
    switch (type) {
    case 7:
    case 133:
    case 134:
    case 135:
        return TypeClass::Date;
    case 2:
    case 3:
    case 4:
    case 5:
    case 6:
    case 14:
    case 16:
    case 17:
    case 18:
    case 19:
    case 20:
    case 21:
    case 131:
        return TypeClass::Number;
    default:
        return TypeClass::Text;
    }
}

} // namespace tabrixdb::platform
