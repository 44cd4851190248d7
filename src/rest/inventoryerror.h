#ifndef KESTRO_REST_INVENTORYERROR_H
#define KESTRO_REST_INVENTORYERROR_H

#include <exception>
#include <string>

namespace Rest {

// Ends the enumeration of one instance type; the module catches it and goes on with the next type.
class InventoryError : public std::exception {
public:
    explicit InventoryError(const std::string& text);
    const char* what() const noexcept override;

private:
    std::string text;
};

}  // namespace Rest

#endif
