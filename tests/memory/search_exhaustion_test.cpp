// The search object when memory runs out. What a stage could not do shows in the status, or as the
// standard exception from an array that grows; the next call on the same object gives the same bits
// as a fresh object.

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/memory/exhaustion.h"
#include "tests/search/kept_objects.h"
#include "tests/search/scripted_counter.h"
#include "tests/search/search_results.h"
#include "tests/search/small_scenes.h"
#include "tests/support/file_bytes.h"
#include "tests/support/scratch_folder.h"

namespace orvandel::test {
namespace {

class SearchExhaustion : public testing::Test {
 protected:
  bool IsTrained(QRSIS& search) const {
    return search.SaveKnowledge(folder_.File("trained").c_str());
  }

  /// Trains again and searches: nothing of an earlier failure is left.
  void ExpectAsFresh(QRSIS& search) const {
    ASSERT_EQ(TrainOn(search, pattern_), 0);
    ExpectSameResult(LookFor(search, scene_), expected_);
  }

  static CPattVerify VerifierOf(QRSIS& search) {
    CPattVerify verifier;
    verifier.ChooseVerifyPoints(search.GetCrawlerPatternData(), 0.1, 10);
    return verifier;
  }

  const ScratchFolder folder_;
  const ScriptedCounter no_hurry_{FrozenTime()};
  const ImagePtr pattern_ = ImageOf(SmallPart());
  const ImagePtr scene_ = SceneOf(SmallPart(), kRotated);
  const Found expected_ = [this] {
    TrainedSearch search(pattern_);
    return LookFor(search, scene_);
  }();
};

TEST_F(SearchExhaustion, WithoutBothContourSetsItIsNotInitialized) {
  FailEachAllocation([&](Trial& trial) {
    QRSIS search;
    EXPECT_EQ(trial.Fail([&] { search.Initialize(); }), Ending::kReturned);
    const ImagePtr pattern = CopyOf(pattern_);
    const ImagePtr scene = CopyOf(scene_);
    const int trained = search.TrainIt(pattern.get());
    EXPECT_EQ(trained, search.GetCrawlerPatternData() == nullptr ? 3 : 0);
    const int untrained_or_uninitialized = trained != 0 ? 1 : 3;
    EXPECT_EQ(search.LookForIt(scene.get()), search.GetCrawlerSceneData() == nullptr || trained != 0
                                                 ? untrained_or_uninitialized
                                                 : 0);
  });
}

TEST_F(SearchExhaustion, TrainingEndsTrainedOrNot) {
  FailEachAllocation([&](Trial& trial) {
    QRSIS search;
    search.Initialize();
    const ImagePtr pattern = CopyOf(pattern_);
    int status = -1;
    const Ending ending = trial.Fail([&] { status = search.TrainIt(pattern.get()); });
    if (ending == Ending::kReturned) {
      EXPECT_TRUE(status == 0 || status == 1 || status == 4);
    }
    EXPECT_EQ(IsTrained(search), ending == Ending::kReturned && status == 0);
    ExpectAsFresh(search);
  });
}

TEST_F(SearchExhaustion, TrainingAgainEndsTrainedOrNot) {
  const ImagePtr other = ImageOf(Triangle());
  FailEachAllocation([&](Trial& trial) {
    TrainedSearch search(other);
    const ImagePtr pattern = CopyOf(pattern_);
    int status = -1;
    const Ending ending = trial.Fail([&] { status = search.TrainIt(pattern.get()); });
    EXPECT_EQ(IsTrained(search), ending == Ending::kReturned && status == 0);
    ExpectAsFresh(search);
  });
}

TEST_F(SearchExhaustion, ASearchEndsWithAStatusOrTheStandardException) {
  FailEachAllocation([&](Trial& trial) {
    TrainedSearch search(pattern_);
    const ImagePtr scene = CopyOf(scene_);
    int status = -1;
    const Ending ending = trial.Fail([&] { status = search.LookForIt(scene.get()); });
    if (ending == Ending::kReturned) {
      EXPECT_TRUE(status == 0 || status == 2 || status == 4);
    }
    if (ending == Ending::kThrew || status != 0) ExpectZeroResult(ResultOf(search, 0), 0);
    ExpectSameResult(LookFor(search, scene_), expected_);
    ExpectAsFresh(search);
  });
}

TEST_F(SearchExhaustion, KnowledgeIsSavedWholeOrNotAtAll) {
  const std::string name = folder_.File("knowledge with a name longer than short strings");
  const std::string file = name + "_qrsi.bmp";
  TrainedSearch search(pattern_);
  ASSERT_TRUE(search.SaveKnowledge(name.c_str()));
  const std::string whole = Contents(file);
  const std::string old = "an older file";
  FailEachAllocation([&](Trial& trial) {
    std::filesystem::remove(file);
    WriteBytes(file, old);
    bool saved = false;
    EXPECT_EQ(trial.Fail([&] { saved = search.SaveKnowledge(name.c_str()); }), Ending::kReturned);
    EXPECT_EQ(Contents(file), saved ? whole : old);
    EXPECT_TRUE(search.SaveKnowledge(name.c_str()));
    EXPECT_EQ(Contents(file), whole);
  });
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path().string()), {}), 1);
}

TEST_F(SearchExhaustion, LoadingKnowledgeLosesTheImageThatCannotBeReadAndNothingElse) {
  constexpr long kBlocksOfImage = 2;  // its record with the row table, and its pixels
  const std::string name = folder_.File("knowledge with a name longer than short strings");
  ASSERT_TRUE(TrainedSearch(pattern_).SaveKnowledge(name.c_str()));
  FailEachAllocation([&](Trial& trial) {
    QRSIS search;
    search.Initialize();
    bool loaded = false;
    const LossByDesign loss;
    const Ending ending = trial.Fail([&] { loaded = search.LoadKnowledge(name.c_str()); });
    if (ending == Ending::kReturned && !loaded) {
      trial.MayLose(kBlocksOfImage);
      EXPECT_FALSE(IsTrained(search));
    }
    EXPECT_TRUE(search.LoadKnowledge(name.c_str()));
    ExpectSameResult(LookFor(search, scene_), expected_);
  });
}

TEST_F(SearchExhaustion, ACopyIsMadeOrThrowsAndItsSourceWorksOn) {
  // A copy that was made is kept for good, as it shares image and sets with its source: the
  // segments of both extracters, and a count of owners for each of three arrays.
  constexpr long kBlocksOfCopy = 5;
  TrainedSearch search(pattern_);
  LookFor(search, scene_);
  const QRSIS& source = search;
  const CPattVerify first = VerifierOf(search);
  const CPattVerify shared(first);  // the book about owners is opened for good
  const LossByDesign loss;
  FailEachAllocation([&](Trial& trial) {
    alignas(QRSIS) static unsigned char memory[sizeof(QRSIS)];
    const Ending ending = trial.Fail([&] { new (memory) QRSIS(source); });
    EXPECT_EQ(ending == Ending::kThrew, trial.HasFailed());
    if (ending == Ending::kReturned) trial.MayLose(kBlocksOfCopy);
    ExpectSameResult(LookFor(search, scene_), expected_);
  });
}

}  // namespace
}  // namespace orvandel::test
