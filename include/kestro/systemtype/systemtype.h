#ifndef KESTRO_SYSTEMTYPE_SYSTEMTYPE_H
#define KESTRO_SYSTEMTYPE_SYSTEMTYPE_H

namespace kestro {

// Values of GetSystemType.
enum SystemTypeValue {
    SYSTEM_NOT_DETECTED = 0,
    SYSTEM_NO_FAMILY = 1,          // also after a missing plug-in, and for an AMD host
    SYSTEM_VEXASERVER = 2,
    SYSTEM_AMD = 3,                // set by the repository for connect mode 9, never detected
    SYSTEM_TV5X = 4,
    SYSTEM_TV50V2 = 5,
    SYSTEM_TV45V2 = 6,
    SYSTEM_VEXASERVER_CHINA = 7
};

// The server family of the local machine, asked once per process of the optional plug-in
// repository_vxsystem beside the library. Not thread-safe: the repository asks while it is built.
class SystemType {
public:
    static SystemType* GetInstance();
    ~SystemType();

    // Detects on the first call, then answers the stored value.
    int GetSystemType();

private:
    SystemType();
    SystemType(const SystemType&) = delete;
    SystemType& operator=(const SystemType&) = delete;

    void Detect();
    void AskPlugin(int (*checkVexaServer)());

    int systemType;
};

}  // namespace kestro

#endif
