#include "kestro/rest/restclientinterface.h"

namespace Rest {

RestClientInterface::~RestClientInterface() {}

}  // namespace Rest
