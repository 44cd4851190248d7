#include "kestro/results/connectionerrors.h"

namespace kestro {

void RunConnectionWork(const boost::function<void()>& work, KestroResult& result)
{
    try {
        work();
    } catch (const authentication_error& error) {
        result = KestroResult(results::RESULT_AUTHENTICATION_FAILED);
        throw error;
    } catch (const logindenied_error& error) {
        result = KestroResult(results::RESULT_PASSWORD_CHANGE_REQUIRED);
        throw error;
    }
}

}  // namespace kestro
