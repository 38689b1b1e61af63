#include "Growth.h"
#include "Ratios.h"

#include <catch2/catch.hpp>

#include <tarn/COMIdentifiers.h>
#include <tarn/Factory.h>
#include <tarn/GUID.h>
#include <tarn/RegistryKey.h>
#include <tarn/Windows.h>

#include "../src/com/NameLists.h"

#include <objidl.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <new>
#include <sstream>

// Counts what this program allocates. Not inlined, or the compiler takes the pairs for mismatched.
static long allocations = 0;
[[gnu::noinline]] void* operator new(std::size_t size)
{
    ++allocations;
    if (void* const memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {
constexpr int entries = 20000;

class Ours : public IPersist, public tarn::IUnknownImpl {
public:
    explicit Ours(IUnknown* outer) : IUnknownImpl(outer) {}
    TARN_IUNKNOWN_METHODS
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID*) override { return E_NOTIMPL; }
    static tarn::IUnknownImpl* create(IUnknown* outer) { return new Ours(outer); }

protected:
    void* queryInterface(const GUID& iid) override
    {
        return iid == IID_IPersist ? static_cast<IPersist*>(this) : IUnknownImpl::queryInterface(iid);
    }
};

// What one writes by hand: the object and its class object, with the same counting and the same checks.
LONG liveObjects = 0;

template <class Interface> class ByHand : public Interface {
public:
    ByHand() { InterlockedIncrement(&liveObjects); }
    virtual ~ByHand() { InterlockedDecrement(&liveObjects); }
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (!object)
            return E_POINTER;
        if (iid != __uuidof(Interface) && iid != IID_IUnknown) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const LONG left = InterlockedDecrement(&references_);
        if (left == 0)
            delete this;
        return static_cast<ULONG>(left);
    }

private:
    LONG references_ = 0;
};

class ObjectByHand : public ByHand<IPersist> {
public:
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID*) override { return E_NOTIMPL; }
};

class FactoryByHand : public ByHand<IClassFactory> {
public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override
    {
        if (!object)
            return E_POINTER;
        if (outer)
            return CLASS_E_NOAGGREGATION;
        auto* const created = new (std::nothrow) ObjectByHand;
        if (!created)
            return E_OUTOFMEMORY;
        const HRESULT hr = created->QueryInterface(iid, object);
        if (FAILED(hr))
            delete created;
        return hr;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

void createMany(IClassFactory* factory)
{
    for (int i = 0; i < 100000; ++i) {
        IPersist* object = nullptr;
        factory->CreateInstance(nullptr, IID_IPersist, reinterpret_cast<void**>(&object));
        bench::keep(object);
        object->Release();
    }
}

std::string hresultList()
{
    std::ostringstream out;
    for (int i = 0; i < entries; ++i)
        out << std::hex << 0x80040000u + static_cast<unsigned>(i) * 37 << std::dec << " SOME_E_NAME_" << i
            << " \"winerror.h\"\n";
    return out.str();
}

GUID guidOf(int i)
{
    return {static_cast<unsigned long>(i) * 2654435761u, static_cast<unsigned short>(i), 0x11D1, {0xA2, 0x1A, 1, 2, 3}};
}

std::string guidList()
{
    std::ostringstream out;
    for (int i = 0; i < entries; ++i)
        out << tarn::toAString(guidOf(i)).c_str() << " IID_ISomeInterface" << i << '\n';
    return out.str();
}

// A file in the system's folder for temporary files, gone at the end.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& text)
    {
        char folder[MAX_PATH];
        GetTempPathA(MAX_PATH, folder);
        GetTempFileNameA(folder, "com", 0, path_);
        std::ofstream(path_, std::ios::binary) << text;
    }
    ~TemporaryFile() { DeleteFileA(path_); }
    const char* path() const { return path_; }
    std::ifstream open() const { return std::ifstream(path_, std::ios::binary); }

private:
    char path_[MAX_PATH] = {};
};

void readWords(std::ifstream in)
{
    std::string first, second;
    while (in >> first >> second)
        bench::keep(second);
}

// While it lives, a key of this process's own stands for the machine's and names the two lists.
class InstalledLists {
public:
    InstalledLists(const TemporaryFile& hresults, const TemporaryFile& guids)
    {
        const auto machine = tarn::RegistryKey::createOwned(HKEY_CURRENT_USER, path_, KEY_ALL_ACCESS);
        const auto files = tarn::RegistryKey::createOwned(
            machine, "Software\\{8900105B-76C1-46DE-ACE4-F9A052866F80}\\Files", KEY_ALL_ACCESS);
        files.setValue("HRESULTs.txt", hresults.path());
        files.setValue("GUIDs.txt", guids.path());
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine);
    }
    ~InstalledLists()
    {
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        tarn::RegistryKey(HKEY_CURRENT_USER, false).deleteKeyRecursive(path_);
    }

private:
    static constexpr const char* path_ = "Software\\tarn-benchmark-names";
};

long hresultOf(int i) { return static_cast<long>(0x80040000u + static_cast<unsigned>(i) * 37); }

// The time of the whole call, its text included; the allocations of the look-up in its table alone.
template <class Call, class Find> void lookUp(const char* what, Call call, Find find)
{
    const auto forAll = [](auto work) {
        return [work] {
            for (int i = 0; i < entries; ++i)
                bench::keep(work(i));
        };
    };
    const auto forCalls = forAll(call);
    double best = 1e9;
    for (int round = 0; round < 15; ++round)
        best = std::min(best, bench::secondsOf(forCalls, bench::Clock::processor));
    const long before = allocations;
    forAll(find)();
    std::printf("%-58s %7.3f us (at most 1), %ld allocations (at most 0)\n", what, best / entries * 1e6,
                allocations - before);
}
} // namespace

TEST_CASE("COM")
{
    bench::Ratios table("COM");
    const tarn::COMInterfacePointer<IClassFactory> ours(new tarn::Factory(&Ours::create)), byHand(new FactoryByHand);
    table.row(
        "create and release 100,000 objects", 1.2, [&] { createMany(ours); }, [&] { createMany(byHand); });

    const TemporaryFile hresults(hresultList()), guids(guidList());
    tarn::HRESULTNames hresultNames;
    tarn::GUIDNames guidNames;
    table.row(
        "load 20,000 HRESULT names (other: read the words)", 2.0,
        [&] {
            std::ifstream in = hresults.open();
            hresultNames = tarn::readHRESULTNames(in);
        },
        [&] { readWords(hresults.open()); });
    table.row(
        "load 20,000 GUID names (other: read the words)", 1.5,
        [&] {
            std::ifstream in = guids.open();
            guidNames = tarn::readGUIDNames(in);
        },
        [&] { readWords(guids.open()); });
    REQUIRE(hresultNames.size() == entries);
    REQUIRE(guidNames.size() == entries);

    const InstalledLists installed(hresults, guids);
    REQUIRE(tarn::getHRESULTIdentifier(hresultOf(1)) == "SOME_E_NAME_1");
    REQUIRE(tarn::toAString(guidOf(1), true) == "IID_ISomeInterface1");
    lookUp(
        "name an HRESULT among 20,000", [](int i) { return tarn::getHRESULTIdentifier(hresultOf(i)); },
        [&](int i) { return hresultNames.find(hresultOf(i)); });
    lookUp(
        "name a GUID among 20,000", [](int i) { return tarn::toAString(guidOf(i), true); },
        [&](int i) { return guidNames.find(guidOf(i)); });
}

TEST_CASE("COM: growth", "[.growth]")
{
    const bench::Growth growth("Loading the names of GUIDs", "names");
    const auto listOf = [](unsigned size) {
        std::ostringstream out;
        for (unsigned i = 0; i < size; ++i)
            out << tarn::toAString(guidOf(static_cast<int>(i))).c_str() << " IID_ISomeInterface" << i << '\n';
        return out.str();
    };
    growth.line("library", bench::tens(2, 5), [&](unsigned size) {
        return [text = listOf(size)] {
            std::istringstream in(text);
            bench::keep(tarn::readGUIDNames(in).size());
        };
    });
    growth.line("reading the words", bench::tens(2, 5), [&](unsigned size) {
        return [text = listOf(size)] {
            std::istringstream in(text);
            std::string first, second;
            while (in >> first >> second)
                bench::keep(second);
        };
    });
}
