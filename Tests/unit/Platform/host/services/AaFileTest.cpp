#include "InRun.hpp"

#include <pal/AaFile.h>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <thread>

namespace mox::testing {
namespace {

class AaFile : public ::testing::Test {
protected:
    std::string path(const std::string& name) const { return m_directory / name; }
    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }
    TemporaryDirectory m_directory;
};

/// An open file that closes itself.
class Opened {
public:
    Opened(const std::string& name, const char* mode) : m_file(AaFileOpen(name.c_str(), mode)) {}
    ~Opened() {
        if (m_file)
            AaFileClose(m_file);
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    operator TAaFile() const { return m_file; }
    std::string readAll() const {
        std::string content(100'000, '\0');
        content.resize(AaFileRead(content.data(), 1, content.size(), m_file));
        return content;
    }
    std::size_t put(const std::string& text) const { return AaFileWrite(text.data(), 1, text.size(), m_file); }

private:
    TAaFile m_file;
};

TEST_F(AaFile, OpensAsFopenDoes) {
    const struct {
        const char* mode;
        bool missing;        // opens a file that does not exist
        const char* content; // of a file "old" after writing "NEW"
        bool writes;
        const char* reads; // of a file "old", right after opening
    } table[] = {{"r", false, "old", false, "old"},   {"rb", false, "old", false, "old"},
                 {"r+", false, "NEW", true, "old"},   {"rb+", false, "NEW", true, "old"},
                 {"w", true, "NEW", true, ""},        {"w+", true, "NEW", true, ""},
                 {"wb", true, "NEW", true, ""},       {"a", true, "oldNEW", true, ""},
                 {"a+", true, "oldNEW", true, "old"}, {"ab", true, "oldNEW", true, ""}};
    for (const auto& row : table) {
        std::filesystem::remove(path("missing"));
        EXPECT_EQ(Opened(path("missing"), row.mode) != nullptr, row.missing) << row.mode;
        write("f", "old");
        EXPECT_EQ(Opened(path("f"), row.mode).readAll(), row.reads) << row.mode;
        write("f", "old");
        EXPECT_EQ(Opened(path("f"), row.mode).put("NEW"), row.writes ? 3U : 0U) << row.mode;
        EXPECT_EQ(contentOf(path("f")), row.content) << row.mode;
    }
}

TEST_F(AaFile, RefusesModesAndNamesThatCannotBe) {
    write("f", "x");
    for (const char* mode : {"", "x", "rw", "r++", "r ", "wx", "+r"})
        EXPECT_EQ(AaFileOpen(path("f").c_str(), mode), nullptr) << mode;
    EXPECT_EQ(contentOf(path("f")), "x");
    EXPECT_EQ(AaFileOpen(nullptr, "r"), nullptr);
    EXPECT_EQ(AaFileOpen(path("f").c_str(), nullptr), nullptr);
    EXPECT_EQ(AaFileOpen(m_directory.path().c_str(), "r"), nullptr);
    EXPECT_EQ(AaFileOpen(path("no/f").c_str(), "w"), nullptr);
}

TEST_F(AaFile, IsNotSeenByTheProgramsThatTheProcessRuns) {
    const Opened sut(write("f", "x"), "r");
    bool found = false;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code ignored;
        if (std::filesystem::read_symlink(entry.path(), ignored) != path("f"))
            continue;
        found = true;
        const int fd = std::stoi(entry.path().filename());
        EXPECT_NE(fcntl(fd, F_GETFD) & FD_CLOEXEC, 0);
    }
    EXPECT_TRUE(found);
}

TEST_F(AaFile, ReadsWholeItems) {
    const Opened sut(write("f", "abcdefgh"), "r");
    char items[16] = {};
    EXPECT_EQ(AaFileRead(items, 3, 2, sut), 2U);
    EXPECT_STREQ(items, "abcdef");
    EXPECT_EQ(AaFileRead(items, 3, 2, sut), 0U);
}

TEST_F(AaFile, ReadsFilesOfAnySizeInPiecesOfAnySize) {
    std::string content;
    for (int i = 0; content.size() < 300'000; ++i)
        content += std::to_string(i) + " ";
    write("f", content);
    for (const std::size_t piece : {1U, 7U, 4096U, 65'535U, 65'536U, 65'537U, 299'999U, 400'000U}) {
        const Opened sut(path("f"), "r");
        std::string got;
        std::vector<char> buffer(piece);
        for (std::size_t n = 0; (n = AaFileRead(buffer.data(), 1, piece, sut)) != 0;)
            got.append(buffer.data(), n);
        EXPECT_EQ(got == content, true) << piece;
    }
}

TEST_F(AaFile, AnswersNothingForNullArgumentsAndEmptyItems) {
    const Opened sut(write("f", "abc"), "r+");
    char byte = 0;
    EXPECT_EQ(AaFileRead(nullptr, 1, 1, sut), 0U);
    EXPECT_EQ(AaFileRead(&byte, 1, 1, nullptr), 0U);
    EXPECT_EQ(AaFileRead(&byte, 0, 1, sut), 0U);
    EXPECT_EQ(AaFileRead(&byte, SIZE_MAX, 2, sut), 0U);
    EXPECT_EQ(AaFileWrite(nullptr, 1, 1, sut), 0U);
    EXPECT_EQ(AaFileWrite(&byte, 1, 1, nullptr), 0U);
    EXPECT_EQ(AaFileWrite(&byte, 0, 1, sut), 0U);
    EXPECT_EQ(AaFileClose(nullptr), EAaFileRetVal_InvalidValue);
    EXPECT_EQ(AaFileGetSize(nullptr), -1);
    EXPECT_EQ(contentOf(path("f")), "abc");
}

TEST_F(AaFile, ReadsLinesWithTheirLineFeed) {
    const Opened sut(write("f", "one\n\nlast"), "r");
    char line[16];
    EXPECT_EQ(AaFileReadLine(line, sizeof line, sut), 4);
    EXPECT_STREQ(line, "one\n");
    EXPECT_EQ(AaFileReadLine(line, sizeof line, sut), 1);
    EXPECT_STREQ(line, "\n");
    EXPECT_EQ(AaFileReadLine(line, sizeof line, sut), 4);
    EXPECT_STREQ(line, "last");
    std::strcpy(line, "kept");
    EXPECT_EQ(AaFileReadLine(line, sizeof line, sut), 0);
    EXPECT_STREQ(line, "kept");
}

TEST_F(AaFile, ContinuesALineThatIsLongerThanTheRoom) {
    const Opened sut(write("f", "abcdefgh\nx\n"), "r");
    char line[5];
    const struct {
        int length;
        const char* line;
    } table[] = {{4, "abcd"}, {4, "efgh"}, {1, "\n"}, {2, "x\n"}};
    for (const auto& row : table) {
        EXPECT_EQ(AaFileReadLine(line, sizeof line, sut), row.length);
        EXPECT_STREQ(line, row.line);
    }
}

TEST_F(AaFile, ReadsALineThatIsLongerThanItsOwnBuffer) {
    const std::string content = std::string(150'000, 'q') + "\nnext\n";
    const Opened sut(write("f", content), "r");
    std::vector<char> line(200'000);
    EXPECT_EQ(AaFileReadLine(line.data(), 200'000, sut), 150'001);
    EXPECT_EQ(AaFileReadLine(line.data(), 200'000, sut), 5);
    EXPECT_STREQ(line.data(), "next\n");
}

TEST_F(AaFile, KeepsZeroBytesOfALine) {
    const Opened sut(write("f", std::string("a\0b\n", 4)), "r");
    char line[16];
    EXPECT_EQ(AaFileReadLine(line, sizeof line, sut), 4);
    EXPECT_EQ(std::string(line, 4), std::string("a\0b\n", 4));
}

TEST_F(AaFile, ReportsWhatCannotBeReadAsALine) {
    char line[4] = "abc";
    const Opened writeOnly(path("w"), "w");
    EXPECT_EQ(AaFileReadLine(line, sizeof line, writeOnly), -1);
    EXPECT_EQ(AaFileReadLine(nullptr, 4, writeOnly), -1);
    EXPECT_EQ(AaFileReadLine(line, 1, writeOnly), -1);
    EXPECT_EQ(AaFileReadLine(line, 4, nullptr), -1);
    EXPECT_STREQ(line, "abc");
}

TEST_F(AaFile, WritesWhereTheReadsEnded) {
    const Opened sut(write("f", "one\ntwo\nthree\n"), "r+");
    char line[16];
    ASSERT_EQ(AaFileReadLine(line, sizeof line, sut), 4);
    EXPECT_EQ(sut.put("TWO"), 3U);
    EXPECT_EQ(contentOf(path("f")), "one\nTWO\nthree\n");
    EXPECT_EQ(AaFileReadLine(line, sizeof line, sut), 1);
    EXPECT_EQ(AaFileReadLine(line, sizeof line, sut), 6);
    EXPECT_STREQ(line, "three\n");
}

TEST_F(AaFile, TellsTheSizeWithWhatWasWritten) {
    const Opened sut(write("f", "abc"), "a");
    EXPECT_EQ(AaFileGetSize(sut), 3);
    sut.put("defg");
    EXPECT_EQ(AaFileGetSize(sut), 7);
}

TEST_F(AaFile, HasNoSizeWhereThereIsNone) {
    const Opened sut("/dev/zero", "r");
    EXPECT_EQ(AaFileGetSize(sut), -1);
}

TEST_F(AaFile, WritesFewerItemsOnAFullDevice) {
    const Opened sut("/dev/full", "w");
    EXPECT_EQ(sut.put("abc"), 0U);
}

TEST_F(AaFile, CountsTheWholeItemsThatFitBeforeTheLimit) {
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{10, 10};
        setrlimit(RLIMIT_FSIZE, &limit);
        TAaFile file = AaFileOpen(path("f").c_str(), "w");
        const std::size_t items = AaFileWrite("aaaabbbbcccc", 4, 3, file);
        const std::size_t more = AaFileWrite("d", 1, 1, file);
        _exit(static_cast<int>(items * 10 + more));
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 20);
    EXPECT_EQ(contentOf(path("f")), "aaaabbbbcc");
}

TEST_F(AaFile, SignalsDoNotShortenReads) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    struct sigaction action {};
    action.sa_handler = [](int) {};
    sigaction(SIGUSR1, &action, nullptr);
    const std::string name = "/proc/self/fd/" + std::to_string(ends[0]);
    const Opened sut(name, "r");
    ::close(ends[0]);
    const pthread_t reader = pthread_self();
    std::thread writer([&] {
        for (int i = 0; i < 20; ++i) {
            pthread_kill(reader, SIGUSR1);
            EXPECT_EQ(::write(ends[1], "ab", 2), 2);
        }
        pthread_kill(reader, SIGUSR1);
        ::close(ends[1]);
    });
    EXPECT_EQ(sut.readAll().size(), 40U);
    writer.join();
}

TEST_F(AaFile, RemovesFilesAndEmptyDirectories) {
    write("f", "x");
    EXPECT_EQ(AaFileRemove(path("f").c_str()), 0);
    EXPECT_EQ(AaFileRemove(path("f").c_str()), EAaFileRetVal_NotFound);
    std::filesystem::create_directories(path("d/e"));
    EXPECT_EQ(AaFileRemove(path("d").c_str()), EAaFileRetVal_Error);
    EXPECT_EQ(AaFileRemove(path("d/e").c_str()), 0);
    EXPECT_EQ(AaFileRemove(path("d").c_str()), 0);
    EXPECT_EQ(AaFileRemove(nullptr), EAaFileRetVal_InvalidValue);
    EXPECT_EQ(AaFileRemove("/proc/self/stat"), EAaFileRetVal_PermissionDenied);
}

TEST_F(AaFile, TellsFilesFromDirectories) {
    write("f", "");
    std::filesystem::create_symlink("f", path("link"));
    std::filesystem::create_symlink("nowhere", path("broken"));
    const struct {
        std::string name;
        int file, directory;
    } table[] = {{path("f"), 1, 0},    {m_directory.path(), 0, 1}, {path("none"), 0, 0},
                 {path("link"), 1, 0}, {path("broken"), 0, 0},     {"/dev/null", 1, 0}};
    for (const auto& row : table) {
        EXPECT_EQ(AaFileExists(row.name.c_str()), row.file) << row.name;
        EXPECT_EQ(AaFileDirExists(row.name.c_str()), row.directory) << row.name;
    }
    EXPECT_EQ(AaFileExists(nullptr), 0);
    EXPECT_EQ(AaFileDirExists(nullptr), 0);
}

TEST_F(AaFile, CreatesDirectories) {
    EXPECT_EQ(AaFileCreateDir(path("d").c_str()), 0);
    EXPECT_TRUE(std::filesystem::is_directory(path("d")));
    EXPECT_EQ(AaFileCreateDir(path("d").c_str()), EAaFileRetVal_AlreadyExists);
    EXPECT_EQ(AaFileCreateDir(path("no/d").c_str()), EAaFileRetVal_NotFound);
    EXPECT_EQ(AaFileCreateDir(nullptr), EAaFileRetVal_InvalidValue);
    write("f", "");
    EXPECT_EQ(AaFileCreateDir(path("f/d").c_str()), EAaFileRetVal_NotFound);
}

TEST_F(AaFile, ListsADirectorySortedByName) {
    write("b.txt", "12345");
    write("a.txt", "");
    write(".hidden", "1");
    std::filesystem::create_directory(path("dir"));
    std::filesystem::create_symlink("b.txt", path("link"));
    std::filesystem::create_symlink("nowhere", path("broken"));
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    const timespec times[] = {{1000, 0}, {1234567, 0}};
    utimensat(AT_FDCWD, path("b.txt").c_str(), times, 0);
    SAaFileDnode* entries = nullptr;
    unsigned int count = 0;
    ASSERT_EQ(AaFileListDir(m_directory.path().c_str(), &entries, &count), 0);
    const struct {
        const char* name;
        EAaFileDnodeType type;
        std::uint64_t size;
    } table[] = {{".hidden", EAaFileDnodeType_File, 1},  {"a.txt", EAaFileDnodeType_File, 0},
                 {"b.txt", EAaFileDnodeType_File, 5},    {"broken", EAaFileDnodeType_Other, 0},
                 {"dir", EAaFileDnodeType_Directory, 0}, {"link", EAaFileDnodeType_File, 5},
                 {"pipe", EAaFileDnodeType_Other, 0}};
    ASSERT_EQ(count, std::size(table));
    for (unsigned int i = 0; i < count; ++i) {
        EXPECT_STREQ(entries[i].name, table[i].name);
        EXPECT_EQ(entries[i].type, table[i].type) << table[i].name;
        EXPECT_EQ(entries[i].size, table[i].size) << table[i].name;
    }
    EXPECT_EQ(entries[2].modifiedSec, 1234567);
    AaFileFreeListDirArray(entries, count);
}

TEST_F(AaFile, ListsNothingOfWhatIsNoDirectory) {
    auto* entries = reinterpret_cast<SAaFileDnode*>(this);
    unsigned int count = 5;
    EXPECT_EQ(AaFileListDir(m_directory.path().c_str(), &entries, &count), 0);
    EXPECT_EQ(entries, nullptr);
    EXPECT_EQ(count, 0U);
    AaFileFreeListDirArray(entries, count);
    entries = reinterpret_cast<SAaFileDnode*>(this);
    count = 5;
    EXPECT_EQ(AaFileListDir(path("none").c_str(), &entries, &count), EAaFileRetVal_NotFound);
    EXPECT_EQ(entries, nullptr);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(AaFileListDir(write("f", "").c_str(), &entries, &count), EAaFileRetVal_NotFound);
    EXPECT_EQ(AaFileListDir(nullptr, &entries, &count), EAaFileRetVal_InvalidValue);
    EXPECT_EQ(AaFileListDir(m_directory.path().c_str(), nullptr, &count), EAaFileRetVal_InvalidValue);
    EXPECT_EQ(AaFileListDir(m_directory.path().c_str(), &entries, nullptr), EAaFileRetVal_InvalidValue);
}

} // namespace
} // namespace mox::testing
