#ifndef KESTRO_RESULTS_CONNECTIONERRORS_H
#define KESTRO_RESULTS_CONNECTIONERRORS_H

#include "kestro/results/kestroresult.h"

#include <boost/function.hpp>

#include <stdexcept>

namespace kestro {

// The target refused the credentials.
class authentication_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The credentials are right, but the account must change its password before it may log in.
class logindenied_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Runs `work`. An authentication_error or logindenied_error leaves its row of the code table in
// `result` and is raised again, as a copy, so the caller both reports the code and unwinds.
void RunConnectionWork(const boost::function<void()>& work, KestroResult& result);

}  // namespace kestro

#endif
