#include "kestro/repository/rinstance.h"
#include "kestro/repository/rrepository.h"
#include "support/fixturehost.h"
#include "support/logcapture.h"
#include "support/smallfilesystem.h"
#include "support/tempdir.h"
#include "xmodule/atomicfile.h"

#include <gtest/gtest.h>

#include <boost/filesystem/operations.hpp>

#include <functional>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

using XModule::AtomicFile;
namespace errc = boost::system::errc;
namespace fs = boost::filesystem;

namespace {

// The names in a folder that a write left behind under a temporary name.
int TemporaryFiles(const std::string& folder)
{
    int found = 0;
    for (fs::directory_iterator entry(folder); entry != fs::directory_iterator(); ++entry)
        if (entry->path().filename().string().find(".tmp-") != std::string::npos) ++found;
    return found;
}

void AddRecords(kestro::repository::RRepository& repo, int count)
{
    for (int i = 0; i < count; ++i) {
        kestro::repository::RInstance record("Processor", "Processor", i);
        record.AddProperty("Model", "Model", std::string(200, 'm'), false);
        record.AddToRepository(repo);
    }
}

}  // namespace

TEST(AtomicFileTest, ARegularFileIsReplacedWhatCannotBeStaysAndNoTemporaryFileIsLeft)
{
    TempDir dir;
    const std::string page = dir.Path() + "/page.html";
    for (const char* content : {"a longer first content", "short", ""}) {
        boost::system::error_code error;
        EXPECT_TRUE(AtomicFile::Write(page, content, error)) << error.message();
        EXPECT_EQ(content, dir.Read("page.html"));
    }
    EXPECT_EQ(dir.Path() + "/.page.html.tmp-" + std::to_string(getpid()), AtomicFile::TemporaryPath(page));
    const struct {
        const char* name;
        std::function<std::string()> target;
        errc::errc_t expected;
    } cases[] = {
        {"folder", [&] { return fs::path(dir.Write("folder/inside", "x")).parent_path().string(); },
         errc::is_a_directory},
        {"pipe", [&] { mkfifo((dir.Path() + "/pipe").c_str(), 0600); return dir.Path() + "/pipe"; },
         errc::operation_not_permitted},
        {"missing folder", [&] { return dir.Path() + "/no/such/file"; }, errc::no_such_file_or_directory},
        {"under a file", [&] { return dir.Write("plain", "x") + "/file"; }, errc::not_a_directory},
    };
    for (const auto& c : cases) {
        const std::string target = c.target();
        const fs::file_type before = fs::status(target).type();
        boost::system::error_code error;
        EXPECT_FALSE(AtomicFile::Write(target, "new", error)) << c.name;
        EXPECT_TRUE(error == c.expected) << c.name << ": " << error.message();
        EXPECT_EQ(before, fs::status(target).type()) << c.name;
    }
    EXPECT_EQ(0, TemporaryFiles(dir.Path()));
}

TEST(AtomicFileTest, AWriteThatFailsMidwayLeavesThePreviousFileWhole)
{
    SmallFileSystem small("64k");
    if (!small.Mounted()) GTEST_SKIP() << "mounting a tmpfs needs root";
    const std::string target = small.Path() + "/inventory.xml";
    const std::string first(16 * 1024, '1');
    boost::system::error_code error;
    ASSERT_TRUE(AtomicFile::Write(target, first, error)) << error.message();

    // More than the free space: the temporary file fills the disk part way and is dropped.
    EXPECT_FALSE(AtomicFile::Write(target, std::string(100 * 1024, '2'), error));
    EXPECT_TRUE(error == errc::no_space_on_device) << error.message();
    EXPECT_EQ(first, ReadFile(target));
    EXPECT_EQ(0, TemporaryFiles(small.Path()));
}

TEST(WriteOnAFullDiskTest, TheFileAndTheSiteKeepTheirPreviousFormAndTheStoreIsKept)
{
    FixtureHost host("ID=rhel\n");
    host.Dir().Write("data/reportcategory_rhel.xml",
                     "<report><category><name>c</name><display>C</display><group><name>cpu</name>"
                     "<display>CPU</display><type>Processor</type></group></category></report>");
    SmallFileSystem small("256k");
    if (!small.Mounted()) GTEST_SKIP() << "mounting a tmpfs needs root";
    kestro::repository::RRepository repo(kestro::repository::ConnectLocal);
    AddRecords(repo, 2);
    ASSERT_TRUE(repo.WriteXML("inventory.xml", small.Path()));
    ASSERT_TRUE(repo.WriteHTML(small.Path()));
    const std::string xml = ReadFile(small.Path() + "/inventory.xml");
    const std::string index = ReadFile(small.Path() + "/index.html");

    small.Fill();
    AddRecords(repo, 20);
    LogCapture capture;
    EXPECT_FALSE(repo.WriteXML("inventory.xml", small.Path()));
    EXPECT_TRUE(capture.Has(1, "[repo] Failed to write XML: " + small.Path() +
                                   "/inventory.xml: No space left on device"))
        << capture.Dump();
    EXPECT_FALSE(repo.WriteHTML(small.Path()));
    EXPECT_TRUE(capture.Has(1, "[repo] Failed to write index page: " + small.Path() +
                                   "/index.html: No space left on device"))
        << capture.Dump();
    EXPECT_EQ(xml, ReadFile(small.Path() + "/inventory.xml"));
    EXPECT_EQ(index, ReadFile(small.Path() + "/index.html"));
    EXPECT_EQ(0, TemporaryFiles(small.Path()));
    std::vector<kestro::repository::RInstance*> records = repo.GetInstances("Processor");
    EXPECT_EQ(22u, records.size());
    repo.FreeInstances(records);
}
