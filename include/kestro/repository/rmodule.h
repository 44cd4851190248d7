#ifndef KESTRO_REPOSITORY_RMODULE_H
#define KESTRO_REPOSITORY_RMODULE_H

#include "kestro/repository/rinventorycase.h"

#include <boost/function.hpp>

#include <map>
#include <string>
#include <vector>

namespace kestro {
namespace repository {

class RRepository;
class RInstancesWrapper;

// Base of every inventory module: a set of instance types, each with a callback that collects
// its records and an optional one that shapes its report table.
class RModule {
public:
    typedef boost::function<void(RRepository&)> EnumCallback;
    typedef boost::function<void(RInstancesWrapper&)> WrapCallback;

    struct TypeCallbacks {
        EnumCallback enumCallback;
        WrapCallback wrapCallback;
    };

    RModule();
    virtual ~RModule();

    virtual std::string GetName() = 0;
    virtual std::string GetDisplay() = 0;
    // Lets a module drop what it kept for the run; called once after a group run.
    virtual void DelDisuseResources();

    void SetInventoryCase(RInventoryCase c);
    void EnumInstances(const std::string& type, RRepository& repo);
    // Appends every type in sorted order, without clearing `types`.
    void EnumTypes(std::vector<std::string>& types);
    WrapCallback FindWrapCallback(const std::string& type);

protected:
    // Fills typeCallbacks; runs once, on the first public call, after the case is set.
    virtual void InitCallbacks() = 0;

    std::map<std::string, TypeCallbacks> typeCallbacks;
    RInventoryCase inventoryCase;

private:
    RModule(const RModule&) = delete;
    RModule& operator=(const RModule&) = delete;
    void EnsureCallbacks();

    bool callbacksReady;
};

}  // namespace repository
}  // namespace kestro

#endif
