#ifndef KESTRO_REST_REDFISHCLIENT_P_H
#define KESTRO_REST_REDFISHCLIENT_P_H

#include <boost/function.hpp>

#include "kestro/rest/restclient.h"
#include "rest/retrypolicy.h"

namespace Rest {

class RedfishClientPrivate {
public:
    RedfishClientPrivate();

    // Runs `attempt` until it gives something other than a 503 or the start-up wait is over.
    RestResult Retry(const boost::function<RestResult()>& attempt) const;

    RestClient inner;
    // The user and password as one text: the key of this client's answers in the run's cache.
    std::string credentials;
    bool hasRetryTiming;
    RetryPolicy retryTiming;
};

}  // namespace Rest

#endif
