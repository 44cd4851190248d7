#include "rest/jsonreaderror.h"

namespace Rest {

JsonReadError::JsonReadError(const std::string& pointer, const std::string& wantedType,
                             const boost::system::error_code& reason)
    : boost::system::system_error(reason),
      text("[assign failure](" + pointer + " >> " + wantedType + "): " + reason.message())
{
}

const char* JsonReadError::what() const noexcept
{
    return text.c_str();
}

}  // namespace Rest
