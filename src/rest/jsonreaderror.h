#ifndef KESTRO_REST_JSONREADERROR_H
#define KESTRO_REST_JSONREADERROR_H

#include <string>

#include <boost/system/system_error.hpp>

namespace Rest {

// A JSON value of the right kind that does not fit the type a read wants. It travels as a JSON
// error, so a module's JSON handler reports it like bad text:
// "[assign failure](<pointer> >> <type>): <reason>".
class JsonReadError : public boost::system::system_error {
public:
    JsonReadError(const std::string& pointer, const std::string& wantedType, const boost::system::error_code& reason);
    const char* what() const noexcept override;

private:
    std::string text;
};

}  // namespace Rest

#endif
