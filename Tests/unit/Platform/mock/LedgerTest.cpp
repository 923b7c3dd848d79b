#include "mock/Ledger.hpp"

#include "mock/Faults.hpp"

#include <pal/AaFile.h>
#include <pal/AaGpuXml.hpp>
#include <pal/AaMem.h>
#include <pal/AaPro.h>
#include <pal/AaSem.h>
#include <pal/AaShell.h>
#include <pal/AaSysCom.h>

#include <gmock/gmock.h>

#include <cstring>
#include <future>

namespace {

using namespace mox::mock;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

TEST(Ledger, NamesTheCallThatOpenedSomething) {
    const Mark mark = ledger().mark();
    TAaSem sem = nullptr;
    ASSERT_EQ(AaSemCreateC(&sem, 1), EAaSemRetVal_NoError);
    const auto open = ledger().open(mark);
    ASSERT_THAT(open, SizeIs(1));
    EXPECT_EQ(open[0].kind, Kind::semaphore);
    EXPECT_EQ(open[0].function, "AaSemCreateC");
    EXPECT_EQ(open[0].number, mark.number + 1);
    EXPECT_THAT(open[0].text(), HasSubstr("semaphore 0x"));
    EXPECT_EQ(AaSemDestroy(sem), EAaSemRetVal_NoError);
    EXPECT_THAT(ledger().open(mark), IsEmpty());
}

TEST(Ledger, CountsRecursiveMutexesAsSemaphores) {
    TAaSemReMutex mutex = nullptr;
    ASSERT_EQ(AaSemReMutexCreate(&mutex), EAaSemRetVal_NoError);
    EXPECT_EQ(ledger().count(Kind::semaphore), 1U);
    EXPECT_EQ(AaSemReMutexDestroy(mutex), EAaSemRetVal_NoError);
    EXPECT_EQ(ledger().count(Kind::semaphore), 0U);
}

TEST(Ledger, CountsEachReferenceToAMemoryBlock) {
    void* block = AaMemMalloc(4);
    AaMemRef(block);
    EXPECT_EQ(ledger().count(Kind::memory), 2U);
    AaMemUnRef(block);
    EXPECT_EQ(ledger().count(Kind::memory), 1U);
    AaMemUnRef(block);
    EXPECT_EQ(ledger().count(Kind::memory), 0U);
}

TEST(Ledger, ListsInTheOrderOfOpening) {
    const Mark mark = ledger().mark();
    void* block = AaMemMalloc(4);
    TAaSem sem = nullptr;
    AaSemCreateC(&sem, 1);
    const auto open = ledger().open(mark);
    ASSERT_THAT(open, SizeIs(2));
    EXPECT_EQ(open[0].kind, Kind::memory);
    EXPECT_EQ(open[1].kind, Kind::semaphore);
    AaMemUnRef(block);
    AaSemDestroy(sem);
}

TEST(Ledger, ForgivesWhatIsKeptForTheLifeOfTheProcess) {
    const Mark mark = ledger().mark();
    TAaSem sem = nullptr;
    ASSERT_EQ(AaSemCreateC(&sem, 1), EAaSemRetVal_NoError);
    ledger().forgive(mark);
    EXPECT_THAT(ledger().open(mark), IsEmpty());
    EXPECT_EQ(AaSemDestroy(sem), EAaSemRetVal_NoError);
}

TEST(MessageInTheLedger, IsOpenFromCreationToDestruction) {
    void* msg = AaSysComMsgCreate(1, 8, 2);
    EXPECT_EQ(ledger().count(Kind::message), 1U);
    void* copy = AaSysComMsgCreateCopy(msg);
    EXPECT_EQ(ledger().count(Kind::message), 2U);
    EXPECT_EQ(AaSysComMsgDestroy(&msg), EAaSysComRetVal_NoError);
    EXPECT_EQ(AaSysComMsgDestroy(&copy), EAaSysComRetVal_NoError);
    EXPECT_EQ(ledger().count(Kind::message), 0U);
}

TEST(MessageInTheLedger, StaysOneWhenATrailerIsAdded) {
    void* msg = AaSysComMsgCreate(1, 8, 2);
    EXPECT_EQ(AaSysComMsgAddTrailer(&msg), EAaSysComRetVal_NoError);
    EXPECT_EQ(ledger().count(Kind::message), 1U);
    EXPECT_EQ(AaSysComMsgDestroy(&msg), EAaSysComRetVal_NoError);
    EXPECT_EQ(ledger().count(Kind::message), 0U);
}

TEST(MessageInTheLedger, IsGoneWhenItWasSentInVain) {
    EXPECT_NE(AaSysComMsgSend(AaSysComMsgCreate(1, 8, 0x00010005)), EAaSysComRetVal_NoError);
    EXPECT_EQ(ledger().count(Kind::message), 0U);
}

void* waitForFuture(void* argument) {
    std::future<void>* end = nullptr;
    std::memcpy(&end, argument, sizeof end);
    end->wait();
    return nullptr;
}

TEST(ExecutionUnitInTheLedger, IsOpenUntilItsFunctionReturns) {
    const Mark mark = ledger().mark();
    std::promise<void> end;
    std::future<void> ended = end.get_future();
    std::future<void>* argument = &ended;
    std::uint32_t id = 0;
    ASSERT_EQ(AaProEuCreateAndStartJoinable(&id, "Watched", waitForFuture, 4096, 5, &argument, sizeof argument, 0),
              EAaProEuRetVal_NoError);
    EXPECT_NE(id, 0U);
    const auto open = ledger().open(mark);
    ASSERT_THAT(open, SizeIs(1));
    EXPECT_EQ(open[0].handle, "\"Watched\"");
    EXPECT_FALSE(ledger().awaitExecutionUnits(mark, 0));
    end.set_value();
    EXPECT_TRUE(ledger().awaitExecutionUnits(mark, 5000));
}

TEST(ExecutionUnitInTheLedger, IsNotOpenWhenItWasRefused) {
    EXPECT_NE(AaProEuCreateAndStartJoinable(nullptr, "Refused", nullptr, 4096, 5, nullptr, 0, 0),
              EAaProEuRetVal_NoError);
    EXPECT_NE(AaProEuCreateAndStartJoinable(nullptr, "", waitForFuture, 4096, 5, nullptr, 0, 0),
              EAaProEuRetVal_NoError);
    EXPECT_EQ(ledger().count(Kind::executionUnit), 0U);
}

TEST(ExecutionUnitInTheLedger, GetsItsArgumentBlock) {
    struct Block {
        std::promise<std::uint64_t>* answer;
        std::uint64_t number;
    };
    std::promise<std::uint64_t> answer;
    const Block block{&answer, 0x1122334455667788U};
    const auto body = [](void* argument) -> void* {
        Block own{};
        std::memcpy(&own, argument, sizeof own);
        own.answer->set_value(own.number);
        return nullptr;
    };
    ASSERT_EQ(AaProEuCreateAndStartJoinable(nullptr, "Block", body, 4096, 5, &block, sizeof block, 1),
              EAaProEuRetVal_NoError);
    EXPECT_EQ(answer.get_future().get(), block.number);
}

TEST(XmlRootInTheLedger, IsOpenUntilItIsDeleted) {
    AaGpuXmlParser parser(0);
    std::unique_ptr<AaGpuXmlNode> document(parser.AaGpuXmlParse("<a><b c='d'/></a>"));
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(ledger().count(Kind::xmlRoot), 1U);
    EXPECT_EQ(document->AaGpuXmlGetFirstChildren()->AaGpuXmlGetName(), "a");
    document.reset();
    EXPECT_EQ(ledger().count(Kind::xmlRoot), 0U);
}

TEST(XmlParserUnderAFault, AnswersNoDocumentAndAFailure) {
    fail("AaGpuXmlParse").with(nullptr);
    AaGpuXmlParser parser(0);
    EXPECT_EQ(parser.AaGpuXmlParse("<a/>"), nullptr);
    EXPECT_NE(parser.AaGpuXmlGetLastResult(), EAaGpuXmlResult_NoError);
}

TEST(FileInTheLedger, IsOpenUntilItIsClosed) {
    const TAaFile file = AaFileOpen("/proc/self/status", "r");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(ledger().count(Kind::file), 1U);
    EXPECT_EQ(AaFileClose(file), EAaFileRetVal_NoError);
    EXPECT_EQ(ledger().count(Kind::file), 0U);
    EXPECT_EQ(AaFileOpen("/no/such/file", "r"), nullptr);
    EXPECT_EQ(ledger().count(Kind::file), 0U);
}

TEST(DirectoryListingInTheLedger, IsOpenUntilItIsFreed) {
    SAaFileDnode* entries = nullptr;
    unsigned int count = 0;
    ASSERT_EQ(AaFileListDir("/usr", &entries, &count), EAaFileRetVal_NoError);
    EXPECT_EQ(ledger().count(Kind::memory), 1U);
    AaFileFreeListDirArray(entries, count);
    EXPECT_EQ(ledger().count(Kind::memory), 0U);
}

int answerNothing(int, const char* const*, char*, size_t) {
    return 0;
}

TEST(RegistrationInTheLedger, IsOpenUntilItIsWithdrawn) {
    ASSERT_EQ(AaShellAddCommand("ledger", "help", answerNothing), EAaShellRetVal_NoError);
    const auto open = ledger().open();
    ASSERT_THAT(open, Not(IsEmpty()));
    EXPECT_EQ(open.back().kind, Kind::registration);
    EXPECT_EQ(open.back().handle, "\"ledger\"");
    EXPECT_EQ(AaShellDeleteCommand("ledger"), EAaShellRetVal_NoError);
    EXPECT_EQ(ledger().count(Kind::registration), 0U);
}

TEST(RegistrationInTheLedger, IsWithdrawnAlsoWhenAFaultAnswers) {
    ASSERT_EQ(AaShellAddCommand("ledger", "help", answerNothing), EAaShellRetVal_NoError);
    fail("AaShellDeleteCommand").with(EAaShellRetVal_OutOfResources);
    EXPECT_EQ(AaShellDeleteCommand("ledger"), EAaShellRetVal_OutOfResources);
    EXPECT_EQ(ledger().count(Kind::registration), 0U);
    EXPECT_EQ(AaShellAddCommand("ledger", "help", answerNothing), EAaShellRetVal_NoError);
    EXPECT_EQ(AaShellDeleteCommand("ledger"), EAaShellRetVal_NoError);
}

TEST(KindOfOpenThing, HasATextEach) {
    EXPECT_STREQ(text(Kind::message), "message");
    EXPECT_STREQ(text(Kind::executionUnit), "execution unit");
    EXPECT_STREQ(text(Kind::srioHandle), "SRIO handle");
}

} // namespace
