#include "kestro/systemtype/basiccheck.h"

namespace kestro {

// The message stays empty: printing a result looks its words up.
BasicCheck::BasicCheck() : result(results::RESULT_FUNCTION_NOT_SUPPORTED, std::string()), negate(false) {}

BasicCheck::~BasicCheck() {}

}  // namespace kestro
