#include "support/logcapture.h"

#include "kestro/xmodule/log.h"

LogCapture::LogCapture() : oldLevel(XModule::GetLogLevel())
{
    XModule::SetLogLevel(XModule::LOG_DEBUG);
    XModule::SetLogSink([this](int level, const std::string& text) { records.emplace_back(level, text); });
}

LogCapture::~LogCapture()
{
    XModule::SetLogSink(XModule::LogSink());
    XModule::SetLogLevel(oldLevel);
}

bool LogCapture::Has(int level, const std::string& text) const
{
    for (size_t i = 0; i < records.size(); ++i)
        if (records[i].first == level && records[i].second == text) return true;
    return false;
}

int LogCapture::Count(const std::string& fragment) const
{
    int found = 0;
    for (size_t i = 0; i < records.size(); ++i)
        if (records[i].second.find(fragment) != std::string::npos) ++found;
    return found;
}

std::string LogCapture::Dump() const
{
    std::string all;
    for (size_t i = 0; i < records.size(); ++i)
        all += std::to_string(records[i].first) + " " + records[i].second + "\n";
    return all;
}
