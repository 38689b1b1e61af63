#include "Test.h"

#include <tarn/SingleInstance.h>
#include <tarn/WindowsFile.h>

#include <future>

namespace {
using Texts = std::vector<BasicString<wchar_t>>;
constexpr const wchar_t* name = L"TarnTest.\x0416";

std::wstring pipeName()
{
    DWORD session = 0;
    ProcessIdToSessionId(GetCurrentProcessId(), &session);
    return L"\\\\.\\pipe\\tarn-instance-" + std::to_wstring(session) + L"-" + name;
}
} // namespace

TEST_CASE("SingleInstance: the first one gets what later ones hand over, whole")
{
    SingleInstance first(name);
    const SingleInstance second(name);
    CHECK(first.isFirst());
    CHECK_FALSE(second.isFirst());
    CHECK_FALSE(first.receive(0));
    const Texts rows[] = {{L"prog", L"", L"\x4E2D \"x\""}, {}, {BasicString<wchar_t>(100'000, L'x')}};
    for (const Texts& texts : rows) {
        auto handed = std::async(std::launch::async, [&] { return second.handOver(texts, 20'000); });
        CHECK(WindowsHandle::waitForAny({first.getEvent()}, 20'000).first == WindowsHandle::signaled);
        CHECK(first.receive(20'000) == texts);
        CHECK(handed.get());
    }
    expectWindowsError([&] { SingleInstance(name).receive(0); }, "Only the first instance receives arguments");
    expectWindowsError([&] { second.handOver({BasicString<wchar_t>(8 << 20, L'x')}, 0); }, ERROR_INVALID_PARAMETER,
                       "Can't hand arguments over");
}

TEST_CASE("SingleInstance: many that come at once are all heard")
{
    SingleInstance first(name);
    std::vector<std::future<bool>> handed;
    for (int i = 0; i < 20; ++i)
        handed.push_back(std::async(std::launch::async, [i] {
            return SingleInstance(name).handOver({BasicString<wchar_t>(std::to_wstring(i))}, 20'000);
        }));
    int sum = 0;
    for (int i = 0; i < 20; ++i)
        sum += first.receive(20'000).value()[0].toInt();
    CHECK(sum == 190);
    for (std::future<bool>& each : handed)
        CHECK(each.get());
}

TEST_CASE("SingleInstance: who says nothing useful is passed over")
{
    SingleInstance first(name);
    auto received = std::async(std::launch::async, [&] { return first.receive(20'000); });
    for (const unsigned size : {0xFFFFFFFFu, 3u, 8u}) {
        WindowsFile stranger;
        while (!stranger.isOpen()) {
            try {
                stranger.open(pipeName().c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
            } catch (const WindowsError&) { // Between two.
                Sleep(1);
            }
        }
        stranger.write(&size, 4);
    }
    CHECK(SingleInstance(name).handOver({L"x"}, 20'000));
    CHECK(received.get() == Texts{L"x"});
}

TEST_CASE("SingleInstance: without the first nothing is handed over, and the next one is first")
{
    const unsigned long handles = openHandles();
    {
        SingleInstance first(name);
        const SingleInstance second(name);
        CHECK_FALSE(second.handOver({L"x"}, 50)); // Nobody receives.
        first = SingleInstance(L"TarnTest.Other");
        CHECK_FALSE(second.handOver({L"x"}, 20));
        CHECK(SingleInstance(name).isFirst());
        const SingleInstance other(std::move(first));
        CHECK(other.isFirst());
    }
    CHECK(openHandles() == handles);
    CHECK_THROWS_AS(SingleInstance(L"a\\b"), WindowsError);
}
