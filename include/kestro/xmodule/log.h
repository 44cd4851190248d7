#ifndef KESTRO_XMODULE_LOG_H
#define KESTRO_XMODULE_LOG_H

#include <functional>
#include <sstream>
#include <string>

namespace XModule {

enum LogLevel { LOG_ERROR = 1, LOG_WARN = 2, LOG_INFO = 3, LOG_DEBUG = 4 };

// One log record: text streamed into Stream() is emitted as one line when the object dies.
class Log {
public:
    Log(int level, const char* file, int line);
    ~Log();
    std::ostream& Stream() { return text; }

private:
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    int level;
    const char* file;
    int line;
    std::ostringstream text;
};

using LogSink = std::function<void(int level, const std::string& text)>;

// Records go to this file (truncated on open); an empty path closes it.
bool SetLogFile(const std::string& path);
// Records above this level are dropped; 1 errors only, 4 everything.
void SetLogLevel(int maxLevel);
int GetLogLevel();
// Receives the text of every record that passes the level; an empty function removes it.
void SetLogSink(LogSink sink);
std::string GetLogFileName();

}  // namespace XModule

#define XLOG(level) ::XModule::Log((level), __FILE__, __LINE__).Stream()

#endif
