#include "rest/inventoryerror.h"

namespace Rest {

InventoryError::InventoryError(const std::string& text) : text(text) {}

const char* InventoryError::what() const noexcept
{
    return text.c_str();
}

}  // namespace Rest
