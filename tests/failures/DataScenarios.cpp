#include "Campaign.h"

#include <tarn/Archive.h>
#include <tarn/Atom.h>
#include <tarn/BStr.h>
#include <tarn/BasicString.h>
#include <tarn/COMIdentifiers.h>
#include <tarn/ChangeList.h>
#include <tarn/COMModule.h>
#include <tarn/GUID.h>
#include <tarn/IUnknownImpl.h>
#include <tarn/LowLevelIOStream.h>
#include <tarn/MemoryStream.h>
#include <tarn/Menu.h>
#include <tarn/RegistryKey.h>
#include <tarn/RegistryValue.h>
#include <tarn/SafeArray.h>
#include <tarn/ShellExtension.h>
#include <tarn/StdIOStream.h>
#include <tarn/Variant.h>

#include <fcntl.h>

namespace failures {
namespace {
struct Node final : tarn::Serializable {
    void serialize(tarn::OutputStream& out) const override
    {
        out << name;
        tarn::writeOptional(out, next);
    }
    void deserialize(tarn::InputStream& in) override
    {
        in >> name;
        tarn::readOptional(in, next);
    }
    tarn::BasicString<char> name;
    tarn::ref_ptr<Node> next;
};
const tarn::SerializableImpl<Node> nodeClass(tarn::declaredAsStruct);

void archiveObjects(const WorkPlace&)
{
    tarn::MemoryOutputStream out;
    {
        const tarn::ref_ptr<Node> first(new Node), second(new Node);
        first->name = "first";
        second->name = "second, with a longer name than fits";
        first->next = second;
        tarn::MemoryInputStream nothing;
        tarn::Archive archive(nothing, out);
        archive << first << second;
    }
    tarn::MemoryInputStream in(out.getData(), static_cast<unsigned>(out.getSize()));
    tarn::ref_ptr<Node> first;
    {
        tarn::Archive archive(in, out);
        archive >> first;
    }
    expect(first->next->name.startsWith("second"), "another object came back");
}

// Without the memory for its place the error is still that of the data.
void readDamaged(const WorkPlace&)
{
    tarn::MemoryOutputStream out;
    {
        tarn::MemoryInputStream nothing;
        tarn::Archive archive(nothing, out);
        const tarn::ref_ptr<Node> node(new Node);
        node->name = "cut in the middle";
        archive << node;
    }
    tarn::MemoryInputStream in(out.getData(), static_cast<unsigned>(out.getSize() - 10));
    tarn::Archive archive(in, out);
    tarn::ref_ptr<Node> node;
    try {
        archive >> node;
    } catch (const tarn::EndOfFile&) {
        return;
    }
    expect(false, "read to the end");
}

void streamFiles(const WorkPlace& place)
{
    const std::string path = place.narrowFile("stream.bin");
    {
        tarn::StdIOStream out(path.c_str(), "wb");
        out << 42 << tarn::BasicString<char>("text");
        out.flush();
    }
    tarn::LowLevelFileStream in(path.c_str(), _O_RDONLY | _O_BINARY);
    int number = 0;
    tarn::BasicString<char> text;
    in >> number >> text;
    expect(number == 42 && text == "text", "other values came back");
    in.close();
}

void convertText(const WorkPlace&)
{
    const tarn::BasicString<wchar_t> wide = tarn::a2w("Gr\xC3\xBC\xC3\x9F", CP_UTF8);
    expect(tarn::BasicString<char>(wide.c_str()).length() == wide.length(), "another length");
    expect(tarn::BasicString<char>("%1 of %2").format("one", "two") == "one of two", "formatted otherwise");
}

void openOwned(tarn::RegistryKey& key, HKEY parent, const wchar_t* name)
{
    key.create(parent, name, KEY_ALL_ACCESS);
    key.attach(key.detach(), true);
}

void useRegistry(const WorkPlace& place)
{
    tarn::RegistryKey key;
    openOwned(key, place.key(), L"settings");
    key.setValue(L"width", 640);
    key.setValue("title", "A title");
    expect(key.getDWordValue("width") == 640, "another number");
    expect(key.getStringValue(L"title") == L"A title", "another text");
    expect(!key.existsValue("height"), "a value too many");
    key.setValue(L"folder", tarn::RegistryValue<wchar_t>(L"%windir%", REG_EXPAND_SZ));
    expect(key.getExpandedStringValue(L"folder").length() > 8, "not expanded");
    key.deleteValue("folder");
    key.flush();
    expect(tarn::RegistryKey::ValueEnumeration<char>(key).size() == 2, "another number of values");
    key.deleteValue("width");
    key.close();
}

void workOnTree(const WorkPlace& place)
{
    tarn::RegistryKey from, to, below;
    openOwned(from, place.key(), L"from");
    openOwned(to, place.key(), L"to");
    openOwned(below, from, L"below");
    below.setValue(L"deep", 1);
    to.AddContentFrom(from);
    expect(to.existsKey("below"), "nothing was copied");
    expect(tarn::RegistryKey::KeyEnumeration<wchar_t>(to).size() == 1, "another number of keys");
    const tarn::RegistryKey root(place.key(), false);
    root.deleteKeyRecursive(L"from");
    root.cleanEmptyTree("to");
    expect(!root.existsKey(L"from"), "the tree is still there");
}

void useAtoms(const WorkPlace&)
{
    tarn::Atom atom(L"tarn-campaign", tarn::Atom::global);
    expect(atom.getNameW() == L"tarn-campaign", "another name");
    expect(tarn::Atom::find("tarn-campaign", tarn::Atom::global) == atom, "another atom");
    atom.free();
}

void useValues(const WorkPlace&)
{
    const tarn::Variant number(L"42");
    expect(number.toLong() == 42, "another number");
    tarn::SafeArray array(VT_I4, 3);
    array.setElement(1, number.convertedTo(VT_I4));
    array.resize(5);
    const tarn::SafeArray copy(array);
    expect(copy.getElement(1).toLong() == 42, "another element");
    expect(tarn::BStr("text").toString() == L"text", "another text");
}

void nameIdentifiers(const WorkPlace&)
{
    const GUID guid = tarn::toGUID(L"{00000000-0000-0000-C000-000000000046}");
    expect(tarn::toString(guid).length() == 38, "another length");
    tarn::getHRESULTIdentifier(E_NOINTERFACE);
}

constexpr GUID clsid = {0x3B0A3F52, 0x1B63, 0x4B2B, {0x9E, 0x5D, 0x13, 0x37, 0x6E, 0x0C, 0x5A, 0x01}};

void serveClasses(const WorkPlace&)
{
    const tarn::COMModule::Class one{clsid, [](IUnknown*) -> tarn::IUnknownImpl* { return nullptr; }, L"Campaign"};
    tarn::COMModule::Class other = one;
    ++other.clsid.Data1;
    tarn::COMModule module(GetModuleHandleW(nullptr), {one, other});
    module.registerClassFactories(CLSCTX_INPROC_SERVER);
    module.revokeClassFactories();
}

struct Commands : tarn::ContextMenuHandler {
    Commands() : ContextMenuHandler(nullptr) {}
    std::vector<Command> getCommands() override { return {{L"One", nullptr, {}, {}}, {L"Two", nullptr, {}, {}}}; }
};

void fillContextMenu(const WorkPlace&)
{
    const tarn::COMInterfacePointer<IContextMenu> handler(new Commands);
    const tarn::Menu menu(true);
    const HRESULT result = handler->QueryContextMenu(menu, 0, 1, 9, CMF_NORMAL);
    expect(GetMenuItemCount(menu) == (FAILED(result) ? 0 : 2), "another number of commands");
    tarn::HRESULTHolder::throwOnError(result);
}

void registerServer(const WorkPlace&)
{
    static tarn::COMModule module(GetModuleHandleW(nullptr),
                                  {{clsid, [](IUnknown*) -> tarn::IUnknownImpl* { return nullptr; }, L"Campaign",
                                    tarn::COMModule::apartment, L"Tarn.Campaign"}});
    module.registerServer(tarn::COMModule::user);
    module.unregisterServer(tarn::COMModule::user);
    tarn::RegistryKey left;
    expect(!left.open(HKEY_CURRENT_USER, L"Software\\Classes\\Tarn.Campaign", KEY_READ), "left registered");
}

void changeAll(const WorkPlace& place)
{
    const std::wstring kept = place.file(L"kept"), gone = place.file(L"gone"), folder = place.file(L"new");
    for (const std::wstring& name : {kept, gone})
        CloseHandle(CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    RegSetKeyValueW(place.key(), L"former", L"text", REG_SZ, L"", 2);
    tarn::ChangeList changes;
    changes.createFolder(folder.c_str());
    changes.writeFile(kept.c_str(), "new", 3);
    changes.move(gone.c_str(), (folder + L"\\moved").c_str());
    changes.setValue(place.key(), L"a\\b", L"", tarn::RegistryValue<wchar_t>(1ul));
    changes.deleteKey(place.key(), L"former");
    try {
        changes.apply();
    } catch (...) {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        HKEY key = nullptr;
        const bool isAsBefore =
            GetFileAttributesExW(kept.c_str(), GetFileExInfoStandard, &data) && data.nFileSizeLow == 0 &&
            GetFileAttributesW(gone.c_str()) != INVALID_FILE_ATTRIBUTES &&
            GetFileAttributesW(folder.c_str()) == INVALID_FILE_ATTRIBUTES &&
            RegGetValueW(place.key(), L"former", L"text", RRF_RT_ANY, nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
            RegOpenKeyExW(place.key(), L"a", 0, KEY_READ, &key) == ERROR_FILE_NOT_FOUND;
        RegCloseKey(key);
        expect(isAsBefore || !changes.getNotUndone().empty(), "not as it was, without a word");
        throw;
    }
}
} // namespace

std::vector<Scenario> foundationScenarios()
{
    return {{"objects in an archive", archiveObjects},
            {"damaged archive", readDamaged},
            {"streams of files", streamFiles},
            {"texts", convertText}};
}

std::vector<Scenario> registryScenarios()
{
    return {{"registry values", useRegistry}, {"registry trees", workOnTree}, {"all or nothing", changeAll}};
}

std::vector<Scenario> comScenarios()
{
    return {{"atoms", useAtoms},
            {"automation values", useValues},
            {"names of identifiers", nameIdentifiers},
            {"registration of a server", registerServer},
            {"class objects", serveClasses},
            {"context menu", fillContextMenu}};
}
} // namespace failures
