#include "kestro/xmodule/log.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <mutex>

namespace XModule {

namespace {

struct LogState {
    std::mutex mutex;
    std::FILE* file = nullptr;
    std::string fileName;
    int maxLevel = LOG_INFO;
    LogSink sink;
};

// Never destroyed: objects released at process exit (the tool-tip singleton) still log.
LogState& State()
{
    static LogState* const state = new LogState;
    return *state;
}

const char* LevelName(int level)
{
    static const char* const names[] = {"ERROR", "ERROR", "WARN", "INFO", "DEBUG"};
    if (level < 1) return names[0];
    if (level > 4) return names[4];
    return names[level];
}

const char* BaseName(const char* path)
{
    const char* slash = std::strrchr(path, '/');
    return slash ? slash + 1 : path;
}

std::string Timestamp()
{
    using namespace std::chrono;
    const system_clock::time_point now = system_clock::now();
    const std::time_t seconds = system_clock::to_time_t(now);
    const long millis = static_cast<long>(duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000);
    std::tm local;
    localtime_r(&seconds, &local);
    char buffer[32];
    const size_t used = std::strftime(buffer, sizeof buffer, "%Y-%m-%d %H:%M:%S", &local);
    std::snprintf(buffer + used, sizeof buffer - used, ".%03ld", millis);
    return buffer;
}

}  // namespace

Log::Log(int level, const char* file, int line) : level(level), file(file), line(line) {}

Log::~Log()
{
    LogState& state = State();
    std::lock_guard<std::mutex> guard(state.mutex);
    if (level > state.maxLevel) return;
    const std::string message = text.str();
    if (state.file) {
        std::fprintf(state.file, "%s [%s] %s:%d %s\n", Timestamp().c_str(), LevelName(level),
                     BaseName(file), line, message.c_str());
        std::fflush(state.file);
    }
    if (state.sink) state.sink(level, message);
}

bool SetLogFile(const std::string& path)
{
    LogState& state = State();
    std::lock_guard<std::mutex> guard(state.mutex);
    if (state.file) std::fclose(state.file);
    state.file = nullptr;
    state.fileName.clear();
    if (path.empty()) return true;
    state.file = std::fopen(path.c_str(), "w");
    if (!state.file) return false;
    state.fileName = path;
    return true;
}

void SetLogLevel(int maxLevel)
{
    LogState& state = State();
    std::lock_guard<std::mutex> guard(state.mutex);
    state.maxLevel = maxLevel;
}

int GetLogLevel()
{
    LogState& state = State();
    std::lock_guard<std::mutex> guard(state.mutex);
    return state.maxLevel;
}

void SetLogSink(LogSink sink)
{
    LogState& state = State();
    std::lock_guard<std::mutex> guard(state.mutex);
    state.sink = std::move(sink);
}

std::string GetLogFileName()
{
    LogState& state = State();
    std::lock_guard<std::mutex> guard(state.mutex);
    return state.fileName;
}

}  // namespace XModule
