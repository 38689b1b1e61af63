#include "Test.h"

#include "BackgroundWork.h"

using planner::BackgroundWork;
using planner::Progress;

TEST_CASE("BackgroundWork: it ends by itself, by an error or when it is cancelled")
{
    BackgroundWork whole([](const Progress& progress) { progress(1, 1); });
    whole.start(nullptr);
    CHECK(whole.finish());

    BackgroundWork failing([](const Progress&) { throw Exception("No paper"); });
    failing.start(nullptr);
    expectError<Exception>([&] { failing.finish(); }, "No paper");

    const auto forEver = [](const Progress& progress) {
        for (;;)
            progress(0, 1);
    };
    BackgroundWork endless(forEver);
    endless.start(nullptr);
    endless.cancel();
    CHECK_FALSE(endless.finish());
    BackgroundWork(forEver).start(nullptr); // The destructor cancels and waits.
}
