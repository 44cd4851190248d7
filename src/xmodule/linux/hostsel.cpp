#include "xmodule/linux/hostsel.h"

#include "kestro/xmodule/rootprefix.h"
#include "kestro/xmodule/unreadable.h"
#include "xmodule/ihv/vendorutility.h"
#include "xmodule/linux/ipmiselelist.h"

#include <boost/filesystem/operations.hpp>

#include <fcntl.h>
#include <linux/ipmi.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace XModule {
namespace Linux {

namespace {

const char kDevicePath[] = "/dev/ipmi0";
const unsigned char kStorageNetFn = 0x0A;
const unsigned char kReserveSel = 0x42;
const unsigned char kGetSelEntry = 0x43;
const unsigned char kCompletionOk = 0x00;
const unsigned char kDataNotPresent = 0xCB;  // an empty log answers the first read so
const unsigned kLastRecordId = 0xFFFF;
const unsigned char kWholeRecord = 0xFF;
const int kAnswerWaitMs = 5000;
// A Reserve SEL answer: completion code and the two bytes of the reservation.
const std::size_t kReserveAnswer = 3;
// Header of a Get SEL Entry answer: completion code and the next record's id.
const std::size_t kEntryHeader = 3;

// One open IPMI device; each request waits for its own answer.
class IpmiDevice {
public:
    explicit IpmiDevice(const std::string& path) : fd(open(path.c_str(), O_RDWR)), nextMsgId(1) {}
    ~IpmiDevice()
    {
        if (fd >= 0) close(fd);
    }
    bool IsOpen() const { return fd >= 0; }

    // The answer's bytes, completion code first; false when the device did not answer.
    bool Request(unsigned char cmd, std::vector<unsigned char> data, std::vector<unsigned char>& answer)
    {
        ipmi_system_interface_addr address = {};
        address.addr_type = IPMI_SYSTEM_INTERFACE_ADDR_TYPE;
        address.channel = IPMI_BMC_CHANNEL;
        ipmi_req request = {};
        request.addr = reinterpret_cast<unsigned char*>(&address);
        request.addr_len = sizeof address;
        request.msgid = nextMsgId++;
        request.msg.netfn = kStorageNetFn;
        request.msg.cmd = cmd;
        request.msg.data = data.data();
        request.msg.data_len = static_cast<unsigned short>(data.size());
        if (ioctl(fd, IPMICTL_SEND_COMMAND, &request) < 0) return false;
        return Receive(request.msgid, answer);
    }

private:
    bool Receive(long msgid, std::vector<unsigned char>& answer)
    {
        pollfd ready = {fd, POLLIN, 0};
        if (poll(&ready, 1, kAnswerWaitMs) <= 0) return false;
        unsigned char buffer[IPMI_MAX_MSG_LENGTH];
        ipmi_addr from = {};
        ipmi_recv received = {};
        received.addr = reinterpret_cast<unsigned char*>(&from);
        received.addr_len = sizeof from;
        received.msg.data = buffer;
        received.msg.data_len = sizeof buffer;
        if (ioctl(fd, IPMICTL_RECEIVE_MSG_TRUNC, &received) < 0 || received.msgid != msgid) return false;
        answer.assign(buffer, buffer + received.msg.data_len);
        return !answer.empty();
    }

    int fd;
    long nextMsgId;
};

std::vector<unsigned char> EntryRequest(const std::vector<unsigned char>& reservation, unsigned recordId)
{
    return {reservation[0], reservation[1], static_cast<unsigned char>(recordId & 0xFF),
            static_cast<unsigned char>(recordId >> 8), 0, kWholeRecord};
}

}  // namespace

int HostSel::Read(std::vector<SelEvent>& events)
{
    const std::string device = RootedPath(kDevicePath);
    boost::system::error_code error;
    if (boost::filesystem::exists(device, error)) return ReadDevice(device, events);
    const std::string ipmitool = XModuleIHV::VendorUtility::Find("ipmitool", {"ipmitool"});
    if (!ipmitool.empty()) return ReadIpmitool(ipmitool, events);
    NoteUnreadable("the BMC's system event log",
                   std::string("this host has neither the IPMI device ") + kDevicePath + " nor ipmitool");
    return HOST_SEL_NO_SOURCE;
}

int HostSel::ReadDevice(const std::string& path, std::vector<SelEvent>& events)
{
    IpmiDevice ipmi(path);
    if (!ipmi.IsOpen()) {
        NoteUnreadable(path, std::strerror(errno));
        return HOST_SEL_UNREADABLE;
    }
    std::vector<unsigned char> answer;
    // A BMC without reservations answers otherwise; reservation 0 is what it then takes.
    std::vector<unsigned char> reservation(2, 0);
    if (ipmi.Request(kReserveSel, {}, answer) && answer.size() >= kReserveAnswer && answer[0] == kCompletionOk)
        reservation.assign(answer.begin() + 1, answer.begin() + kReserveAnswer);
    for (unsigned id = 0, count = 0; id != kLastRecordId && count <= kLastRecordId; ++count) {
        if (!ipmi.Request(kGetSelEntry, EntryRequest(reservation, id), answer)) return HOST_SEL_UNREADABLE;
        if (answer[0] == kDataNotPresent && events.empty()) return HOST_SEL_READ;
        if (answer[0] != kCompletionOk || answer.size() != kEntryHeader + kSelRecordSize) return HOST_SEL_UNREADABLE;
        SelEvent event;
        DecodeSelRecord(std::vector<std::uint8_t>(answer.begin() + kEntryHeader, answer.end()), event);
        events.push_back(event);
        const unsigned next = answer[1] | (unsigned(answer[2]) << 8);
        if (next == id) break;
        id = next;
    }
    return HOST_SEL_READ;
}

int HostSel::ReadIpmitool(const std::string& program, std::vector<SelEvent>& events)
{
    XModuleIHV::RawData_ record;
    if (!XModuleIHV::VendorUtility::Run(program, {"sel", "elist"}, record)) return HOST_SEL_UNREADABLE;
    events = ParseSelElist(record.rawData);
    return HOST_SEL_READ;
}

}  // namespace Linux
}  // namespace XModule
