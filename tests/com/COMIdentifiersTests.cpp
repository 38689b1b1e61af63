#include "Test.h"

#include "ScratchFolder.h"

#include <tarn/COMIdentifiers.h>
#include <tarn/GUID.h>
#include <tarn/RegistryKey.h>
#include <tarn/RegistryValue.h>
#include <tarn/WindowsModule.h>

#include <com/NameLists.h>

#include <oleauto.h>
#include <knownfolders.h>
#include <shlobj.h>

#include <fstream>
#include <sstream>
#include <unordered_map>

using namespace std::string_literals;

namespace {
constexpr const char* hresultList = "80004005 E_FAIL \"a comment 80040154 with blanks\"\r\n"
                                    "8000000a FIRST_NAME\n8000000A E_PENDING 0x80070057 E_INVALIDARG\t\"\"\n"
                                    "80028017 LAST \"a comment that does not end 8000ffff E_UNEXPECTED";
constexpr const char* guidList = "{11111111-2222-3333-4444-555555555555} IID_Listed\r\n"
                                 "{59555932-0000-0010-8000-00aa00389b71} MEDIASUBTYPE_Listed";

// The lists are read once in a process, so they have to be there before the first test runs. While they
// are read, a key of this process's own stands for the machine's.
const bool listsAreRead = [] {
    const ScratchFolder folder;
    const std::string path = "Software\\tarn-test-names-" + std::to_string(GetCurrentProcessId());
    auto machine = RegistryKey::createOwned(HKEY_CURRENT_USER, path.c_str(), KEY_ALL_ACCESS);
    auto files =
        RegistryKey::createOwned(machine, "Software\\{8900105B-76C1-46DE-ACE4-F9A052866F80}\\Files", KEY_ALL_ACCESS);
    files.setValue("HRESULTs.txt", folder.write("HRESULTs.txt", hresultList).c_str());
    folder.write("GUIDs.txt", guidList);
    SetEnvironmentVariableA("tarn-test-names", folder.path().string().c_str());
    files.setValue("GUIDs.txt", RegistryValue<char>("%tarn-test-names%\\GUIDs.txt", REG_EXPAND_SZ));
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine);
    getHRESULTIdentifier(0);
    toAString(IID_NULL, true);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    files.close();
    machine.close();
    RegistryKey(HKEY_CURRENT_USER, false).deleteKeyRecursive(path.c_str());
    return true;
}();

std::string nameOf(const char* guid) { return toAString(toGUID(guid), true); }
} // namespace

TEST_CASE("getHRESULTIdentifier: the installed list names values, others are numbers with a zero")
{
    REQUIRE(listsAreRead);
    const auto& [value, expected] = GENERATE(table<HRESULT, std::string>({
        {E_FAIL, "E_FAIL"},
        {E_PENDING, "E_PENDING"}, // The later of two records.
        {E_INVALIDARG, "E_INVALIDARG"},
        {TYPE_E_FIELDNOTFOUND, "LAST"},
        // Neither of these became a record by standing in a comment.
        {E_UNEXPECTED, "HRESULT value 8000ffff\0"s},
        {REGDB_E_CLASSNOTREG, "HRESULT value 80040154\0"s},
        {0, "HRESULT value 0\0"s},
    }));
    CHECK(getHRESULTIdentifier(value) == expected);
    CHECK(COMError(0x80004005, "Call").what() == "Call: E_FAIL"s);
}

TEST_CASE("toAString: the installed list comes before the names that identifiers give themselves")
{
    const auto& [guid, expected] = GENERATE(table<const char*, const char*>({
        {"{11111111-2222-3333-4444-555555555555}", "IID_Listed"},
        {"{59555932-0000-0010-8000-00AA00389B71}", "MEDIASUBTYPE_Listed"},
        {"{32595559-0000-0010-8000-00AA00389B71}", "FOURCC \"YUY2\""},
        {"{20202059-0000-0010-8000-00AA00389B71}", "FOURCC \"Y   \""},
        {"{7E202059-0000-0010-8000-00AA00389B71}", "FOURCC \"Y  ~\""},
        {"{7F202059-0000-0010-8000-00AA00389B71}", "FOURCC 7f202059"},
        {"{0000000A-0000-0010-8000-00AA00389B71}", "FOURCC a"},
        {"{D5A47FA6-6D98-11D1-A21A-00A0C9223196}", "{D5A47FA6-6D98-11D1-A21A-00A0C9223196}"}, // Just below.
        {"{D5A47FA7-6D98-11D1-A21A-00A0C9223196}", "Manufacturer ID 0"},
        {"{D5A57FA5-6D98-11D1-A21A-00A0C9223196}", "Manufacturer ID 65534"},
        {"{D5A57FA6-6D98-11D1-A21A-00A0C9223196}", "{D5A57FA6-6D98-11D1-A21A-00A0C9223196}"},
        {"{E36DC2AC-6D9A-11D1-A21A-00A0C9223196}", "Product ID 0"},
        {"{E36EC2AB-6D9A-11D1-A21A-00A0C9223196}", "{E36EC2AB-6D9A-11D1-A21A-00A0C9223196}"},
        {"{00000000-0000-0000-C000-000000000046}", "IID_IUnknown"}, // By the registry.
    }));
    CHECK(nameOf(guid) == expected);
    CHECK(toAString(toGUID(guid)) == guid);
}

TEST_CASE("toAString: the registry names a class by a text that is not empty")
{
    const std::string guid = "{7E0B4C11-90A2-4F5D-B1C3-2D6A8F0E9911}", path = "CLSID\\" + guid;
    auto key = RegistryKey::createOwned(HKEY_CLASSES_ROOT, path.c_str(), KEY_ALL_ACCESS);
    CHECK(nameOf(guid.c_str()) == guid);
    key.setValue("", "");
    CHECK(nameOf(guid.c_str()) == guid);
    key.setValue("", 1ul);
    CHECK(nameOf(guid.c_str()) == guid);
    key.setValue("", "Test class");
    CHECK(nameOf(guid.c_str()) == "CLSID_Test class");
    key.close();
    RegistryKey(HKEY_CLASSES_ROOT, false).deleteKey(path.c_str());
}

TEST_CASE("GUID: converts from and to text, and is ordered by its bytes in memory")
{
    CHECK(toGUID(L"{00020400-0000-0000-c000-000000000046}") == IID_IDispatch);
    CHECK(toWString(IID_IDispatch) == L"{00020400-0000-0000-C000-000000000046}");
    CHECK(toGUID(static_cast<const char*>(nullptr)) == IID_NULL);
    const GUID made = newGUID();
    CHECK((made != IID_NULL && made != newGUID()));
    expectError<COMError>([] { toGUID("{00020400-0000-0000-C000-00000000004}"); },
                          "Can't convert \"{00020400-0000-0000-C000-00000000004}\" to a GUID: HRESULT value 800401f3");
    // Data1 lies with its lowest byte first.
    const GUID a = {0x00000100, 0, 0, {}}, b = {0x00000001, 0, 0, {}}, c = {0x000000FF, 0, 0, {}};
    const GUID d = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 9}}, e = {0, 0, 0, {1}}, f = {0, 1, 0, {}};
    CHECK((a < b && b < c && !(c < c) && d < e && e < f && f < a));
    const std::unordered_map<GUID, int> numbers = {{a, 1}, {b, 2}, {c, 3}};
    CHECK((numbers.size() == 3 && numbers.at(b) == 2));
}

TEST_CASE("Name lists: reading ends at what is no record, and a bad identifier is reported")
{
    std::istringstream values("1 ONE 2 T\x01WO nonsense 3 THREE"), tooLarge("1 ONE 123456789 LONG 2 TWO");
    const auto two = readHRESULTNames(values);
    CHECK((two.size() == 2 && two.find(2) == "T\x01WO" && two.find(3).empty()));
    CHECK(readHRESULTNames(tooLarge).size() == 1);

    std::istringstream cut("{00020400-0000-0000-C000-000000000046} ONE\n{00020400-0000-0000-C000-000000000047}");
    const auto one = readGUIDNames(cut);
    CHECK((one.size() == 1 && one.find(IID_IDispatch) == "ONE"));
    const std::string good = "{00020400-0000-0000-C000-000000000046}";
    GUID quick{};
    CHECK((detail::parseGUID(good.c_str(), quick) && quick == IID_IDispatch)); // Not left to toGUID.
    for (std::size_t i = 0; i < good.size(); ++i) {
        std::istringstream malformed(good + " IID_IDispatch " + good.substr(0, i) + "x" + good.substr(i + 1) +
                                     " IID_Bad");
        CHECK(thrownBy<COMError>([&] { readGUIDNames(malformed); }).getHRESULT() == CO_E_CLASSSTRING);
    }
}

TEST_CASE("Name lists: those that tools/com-names writes are whole")
{
    const auto folder = WindowsModule(static_cast<HINSTANCE>(nullptr)).getFilenameA().getDirectory();
    std::ifstream values(folder + "\\com-names\\HRESULTs.txt"), guids(folder + "\\com-names\\GUIDs.txt");
    const auto hresults = readHRESULTNames(values);
    CHECK((hresults.size() > 3000 && hresults.find(S_OK) == "S_OK" && hresults.find(E_FAIL) == "E_FAIL"));
    CHECK(hresults.find(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)) == "HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)");
    const auto names = readGUIDNames(guids);
    CHECK((names.size() > 3000 && names.find(IID_IContextMenu) == "IID_IContextMenu"));
    CHECK(names.find(FOLDERID_Desktop) == "FOLDERID_Desktop");
}
