#include "kestro/rest/restmultipartpart.h"

namespace Rest {

RestMultipartPart::~RestMultipartPart() {}

}  // namespace Rest
