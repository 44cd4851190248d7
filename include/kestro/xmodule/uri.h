#ifndef KESTRO_XMODULE_URI_H
#define KESTRO_XMODULE_URI_H

#include <string>

namespace XModule {

class Uri {
public:
    // Percent-encodes every byte except letters, digits and - _ . ! ~ * ' ( ) ; , / ? : @ & = + $ #,
    // so that a whole address keeps its structure.
    static std::string encodeURI(const std::string& text);
};

}  // namespace XModule

#endif
