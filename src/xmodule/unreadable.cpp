#include "kestro/xmodule/unreadable.h"

#include "kestro/xmodule/log.h"

#include <mutex>
#include <set>

namespace XModule {

namespace {

std::mutex notesMutex;
std::vector<std::string> notes;
std::set<std::string> sources;

}  // namespace

void NoteUnreadable(const std::string& source, const std::string& reason)
{
    {
        std::lock_guard<std::mutex> guard(notesMutex);
        if (!sources.insert(source).second) return;
        notes.push_back(source + ": " + reason);
    }
    XLOG(LOG_WARN) << "[repo] Unable to read " << source << ": " << reason;
}

std::vector<std::string> GetUnreadableNotes()
{
    std::lock_guard<std::mutex> guard(notesMutex);
    return notes;
}

void ClearUnreadableNotes()
{
    std::lock_guard<std::mutex> guard(notesMutex);
    notes.clear();
    sources.clear();
}

}  // namespace XModule
