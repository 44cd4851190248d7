#include "progressbar.h"

#include "kestro/xmodule/log.h"

#include <boost/bind/bind.hpp>

#include <unistd.h>

#include <iostream>

namespace {

const std::string kTypeStart = "[repo] Begin to run inventory for type: ";
const char kClearLine[] = "\r\033[K";

}  // namespace

ProgressBar::ProgressBar(std::size_t groupCount) : shown(isatty(STDERR_FILENO) == 1), groupCount(groupCount)
{
    if (shown) XModule::SetLogSink(boost::bind(&ProgressBar::OnLogRecord, this, boost::placeholders::_1,
                                               boost::placeholders::_2));
}

ProgressBar::~ProgressBar()
{
    if (!shown) return;
    XModule::SetLogSink(XModule::LogSink());
    std::cerr << kClearLine << std::flush;
}

void ProgressBar::StartGroup(std::size_t index, const std::string& display)
{
    groupIndex = index;
    group = display;
    type.clear();
    Draw();
}

void ProgressBar::OnLogRecord(int level, const std::string& text)
{
    if (text.compare(0, kTypeStart.size(), kTypeStart) != 0) return;
    type = text.substr(kTypeStart.size());
    ++typesRun;
    Draw();
}

void ProgressBar::Draw() const
{
    if (!shown) return;
    std::cerr << kClearLine << "  [" << groupIndex + 1 << "/" << groupCount << "] " << group << "  (" << typesRun
              << " types)";
    if (!type.empty()) std::cerr << "  " << type;
    std::cerr << std::flush;
}
