#include "Test.h"

#include <tarn/RegistryKey.h>
#include <tarn/RegistryValue.h>

#include "ScratchKey.h"
#include "TextOf.h"

#include <atomic>
#include <thread>

namespace {
using Bytes = std::vector<unsigned char>;

const char wrongDWordType[] = "Can't read DWORD value from registry with type other than REG_DWORD_LITTLE_ENDIAN, "
                              "REG_DWORD_BIG_ENDIAN or REG_BINARY";
const char wrongDWordSize[] = "Can't read DWORD from registry value with size != sizeof(DWORD)";

const char wrongQWordType[] =
    "Can't read QWORD value from registry with type other than REG_QWORD, REG_DWORD or REG_BINARY";
const char wrongQWordSize[] = "Can't read QWORD from registry value with size != sizeof(QWORD)";

template <class Ch> std::list<BasicString<Ch>> listOf(std::initializer_list<const char*> texts)
{
    std::list<BasicString<Ch>> list;
    for (const char* text : texts)
        list.emplace_back(text);
    return list;
}
} // namespace

TEMPLATE_TEST_CASE("RegistryKey: DWORDs of three types are read as they lie, no others", "", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    for (const unsigned long type : {REG_DWORD, REG_DWORD_BIG_ENDIAN, REG_BINARY}) {
        scratch.store(L"", L"v", type, {0, 0, 1, 2});
        CHECK(key.getDWordValue(TEXT_OF("v")) == 0x02010000);
    }
    unsigned long value = 7;
    const auto read = [&](unsigned long type, const Bytes& data) {
        scratch.store(L"", L"v", type, data);
        key.getValue(TEXT_OF("v"), value);
    };
    expectError<std::runtime_error>([&] { read(REG_BINARY, {1, 2, 3}); }, wrongDWordSize);
    expectError<std::runtime_error>([&] { read(REG_DWORD, {}); }, wrongDWordSize);
    expectError<std::runtime_error>([&] { read(REG_NONE, {1, 2, 3, 4}); }, wrongDWordType);
    expectWindowsError([&] { read(REG_BINARY, Bytes(8)); }, ERROR_MORE_DATA, "Can't query DWORD registry value");
    CHECK_FALSE(key.getValue(TEXT_OF("missing"), value));
    CHECK(value == 7);
    expectWindowsError([&] { key.getDWordValue(TEXT_OF("missing")); }, ERROR_FILE_NOT_FOUND, "");
}

TEMPLATE_TEST_CASE("RegistryKey: numbers of 64 bits are written, and read from three types", "", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    key.setValue(TEXT_OF("v"), -2ll);
    CHECK(scratch.stored(L"", L"v") == StoredValue{REG_QWORD, {0xFE, 255, 255, 255, 255, 255, 255, 255}});
    unsigned long long value = 0;
    CHECK((key.getValue(TEXT_OF("v"), value) && value == -2ull && key.getQWordValue(TEXT_OF("v")) == -2ull));
    CHECK(RegistryValue<TestType>(3'000'000'000'000).getQWord() == 3'000'000'000'000);
    const auto read = [&](unsigned long type, const Bytes& data) {
        scratch.store(L"", L"v", type, data);
        return key.getQWordValue(TEXT_OF("v"));
    };
    CHECK((read(REG_BINARY, {1, 0, 0, 0, 0, 0, 0, 1}) == 0x0100000000000001 &&
           read(REG_DWORD, {1, 2, 3, 4}) == 0x04030201));
    expectError<std::runtime_error>([&] { read(REG_QWORD, {1, 2, 3, 4}); }, wrongQWordSize);
    expectError<std::runtime_error>([&] { read(REG_SZ, {1, 2, 3, 4, 5, 6, 0, 0}); }, wrongQWordType);
    expectWindowsError([&] { read(REG_QWORD, Bytes(9)); }, ERROR_MORE_DATA, "Can't query QWORD registry value");
    expectWindowsError([&] { key.getQWordValue(TEXT_OF("none")); }, ERROR_FILE_NOT_FOUND, "");
}

TEMPLATE_TEST_CASE("RegistryKey: a missing value is the default, or nothing; a wrong one is an error", "", char,
                   wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    const TestType* const name = TEXT_OF("v");
    CHECK((!key.findDWordValue(name) && !key.findQWordValue(name) && !key.findStringValue(name)));
    CHECK((!key.findExpandedStringValue(name) && !key.findStringsValue(name)));
    CHECK((key.getDWordValue(name, 7) == 7 && key.getQWordValue(name, 8) == 8));
    CHECK(key.getStringValue(name, TEXT_OF("no")) == TEXT_OF("no"));
    CHECK(key.getExpandedStringValue(name, static_cast<const TestType*>(nullptr)).empty());

    key.setValue(name, 5);
    CHECK((key.findDWordValue(name) == 5ul && key.findQWordValue(name) == 5ull));
    CHECK((key.getDWordValue(name, 7) == 5 && key.getQWordValue(name, 7) == 5));
    CHECK_THROWS_AS(key.getStringValue(name, TEXT_OF("no")), WindowsError);
    key.setExpandableValue(name, TEXT_OF("%tarn-none%"));
    CHECK(scratch.stored(L"", L"v") == StoredValue{REG_EXPAND_SZ, bytesOf(L"%tarn-none%")});
    CHECK((key.findStringValue(name) == TEXT_OF("%tarn-none%") && key.findExpandedStringValue(name)));
    CHECK_THROWS_AS(key.getDWordValue(name, 7), std::exception);
    key.setValue(name, listOf<TestType>({"a", "b"}));
    CHECK(key.findStringsValue(name) == listOf<TestType>({"a", "b"}));
}

TEMPLATE_TEST_CASE("RegistryKey: texts are read up to a zero or their end", "", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    const auto read = [&](unsigned long type, const Bytes& data) {
        scratch.store(L"", L"v", type, data);
        return key.getStringValue(TEXT_OF("v"));
    };
    CHECK(read(REG_EXPAND_SZ, bytesOf(L"%windir%")) == TEXT_OF("%windir%"));
    CHECK(read(REG_SZ, {'a', 0, 'b', 0}) == TEXT_OF("ab"));
    CHECK(read(REG_SZ, {'a', 0, 'b', 0, 'c'}).left(2) == TEXT_OF("ab"));
    CHECK(read(REG_SZ, {'a', 0, 0, 0, 'b', 0}) == TEXT_OF("a"));
    CHECK(read(REG_SZ, {0, 0}).size() == 0);
    CHECK(read(REG_SZ, {}).size() == 0);
    CHECK(read(REG_SZ, bytesOf(std::wstring(100000, L'x'))) == BasicString<TestType>(100000, TestType('x')));
    scratch.storeText(L"", nullptr, L"default");
    CHECK(key.getStringValue(TEXT_OF("")) == TEXT_OF("default"));

    expectWindowsError([&] { key.getStringValue(TEXT_OF("none")); }, ERROR_FILE_NOT_FOUND, "Registry value not found");
    scratch.store(L"", L"number", REG_DWORD, {1, 2, 3, 4});
    expectWindowsError([&] { key.getStringValue(TEXT_OF("number")); }, ERROR_UNSUPPORTED_TYPE,
                       "Wrong value type. Expected REG_SZ or REG_EXPAND_SZ");
    expectWindowsError([&] { RegistryKey().getStringValue(TEXT_OF("v")); }, ERROR_INVALID_HANDLE, "");
}

TEMPLATE_TEST_CASE("RegistryKey: expanded texts have the variables of REG_EXPAND_SZ replaced", "", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    const std::wstring longValue(3000, L'v');
    SetEnvironmentVariableW(L"tarn-test", longValue.c_str());
    scratch.store(L"", L"v", REG_EXPAND_SZ, bytesOf(L"<%tarn-test%> %tarn-none%"));
    scratch.storeText(L"", L"plain", L"%tarn-test%");
    const BasicString<TestType> expanded(L"<" + longValue + L"> %tarn-none%");
    CHECK(key.getExpandedStringValue(TEXT_OF("v")) == expanded);
    CHECK(key.getExpandedStringValue(TEXT_OF("v"), TEXT_OF("default")) == expanded);
    CHECK(key.findExpandedStringValue(TEXT_OF("v")) == expanded);
    CHECK(key.getExpandedStringValue(TEXT_OF("plain")) == TEXT_OF("%tarn-test%"));
    SetEnvironmentVariableW(L"tarn-test", nullptr);
    expectWindowsError([&] { key.getExpandedStringValue(TEXT_OF("none")); }, ERROR_FILE_NOT_FOUND,
                       "Registry value not found");
}

TEST_CASE("RegistryKey: a text that grows while it is read comes whole")
{
    const ScratchKey scratch(1);
    const RegistryKey key(scratch, false);
    const std::wstring longText(4000, L'l');
    scratch.storeText(L"", L"v", L"s");
    std::atomic<bool> done = false;
    std::thread writer([&] {
        for (bool grow = true; !done; grow = !grow)
            scratch.storeText(L"", L"v", grow ? longText.c_str() : L"s");
    });
    unsigned torn = 0;
    for (int i = 0; i < 3000; ++i) {
        try {
            const std::wstring text = key.getStringValue(L"v");
            torn += text != longText && text != L"s";
        } catch (const WindowsError&) {
            ++torn;
        }
    }
    done = true;
    writer.join();
    CHECK(torn == 0);
}

TEMPLATE_TEST_CASE("RegistryKey: multi-strings are read with any or no terminators", "", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    auto strings = listOf<TestType>({"before"});
    CHECK_FALSE(key.getValue(TEXT_OF("none"), strings));
    CHECK(strings == listOf<TestType>({"before"}));
    scratch.storeText(L"", L"v", L"text");
    expectWindowsError([&] { key.getValue(TEXT_OF("v"), strings); }, ERROR_UNSUPPORTED_TYPE,
                       "Wrong value type. Expected REG_MULTI_SZ");

    const auto two = listOf<TestType>({"a", "bc"});
    for (const auto& [data, expected] : {std::pair(Bytes{'a', 0, 0, 0, 'b', 0, 'c', 0, 0, 0, 0, 0}, two),
                                         {{'a', 0, 0, 0, 'b', 0, 'c', 0, 0, 0}, two},
                                         {{'a', 0, 0, 0, 'b', 0, 'c', 0}, two},
                                         {{'a', 0, 0, 0, 'b', 0, 'c', 0, 0, 0, 0, 0, 'd', 0, 0, 0, 0, 0}, two},
                                         {{0, 0}, {}},
                                         {{}, {}}}) {
        scratch.store(L"", L"v", REG_MULTI_SZ, data);
        CHECK(key.getValue(TEXT_OF("v"), strings));
        CHECK(strings == expected);
    }
}

TEMPLATE_TEST_CASE("RegistryKey: what is written is what the platform finds", "", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    const auto stored = [&] { return scratch.stored(L"", L"v"); };
    key.setValue(TEXT_OF("v"), 0x04030201UL);
    CHECK(stored() == StoredValue{REG_DWORD, {1, 2, 3, 4}});
    key.setValue(TEXT_OF("v"), 0);
    CHECK(stored() == StoredValue{REG_DWORD, {0, 0, 0, 0}});
    const TestType* const null = nullptr;
    for (const TestType* empty : {TEXT_OF(""), null}) {
        key.setValue(TEXT_OF("v"), empty);
        CHECK(stored() == StoredValue{REG_SZ, {0, 0}});
        CHECK(RegistryValue<TestType>(empty).getSize() == sizeof(TestType));
    }
    CHECK(key.getValueSize(TEXT_OF("v")) == sizeof(TestType));
    key.setValue(TEXT_OF("v"), listOf<TestType>({"a", "b"}));
    CHECK(stored() == StoredValue{REG_MULTI_SZ, {'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0}});
    const unsigned char bytes[] = {9, 8, 7};
    key.setValue(TEXT_OF("v"), bytes, 3, REG_BINARY);
    CHECK(stored() == StoredValue{REG_BINARY, {9, 8, 7}});
    key.setValue(TEXT_OF(""), TEXT_OF("default"));
    CHECK(scratch.stored(L"", nullptr) == StoredValue{REG_SZ, bytesOf(L"default")});
    expectWindowsError([&] { RegistryKey().setValue(TEXT_OF("v"), 1UL); }, ERROR_INVALID_HANDLE, "");
}

TEMPLATE_TEST_CASE("RegistryKey: values are looked at, raw, and deleted", "", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    scratch.store(L"", L"v", REG_QWORD, {1, 2, 3, 4, 5, 6, 7, 8});
    unsigned char data[8] = {}, again[8] = {};
    unsigned long size = sizeof data, type = REG_NONE;
    CHECK(key.getValue(TEXT_OF("v"), data, size, type));
    CHECK(type == REG_QWORD);
    CHECK(data[7] == 8);
    CHECK(key.getValue(TEXT_OF("v"), again, 8UL));
    CHECK(again[0] == 1);
    size = 4;
    expectWindowsError([&] { key.getValue(TEXT_OF("v"), data, size, type); }, ERROR_MORE_DATA, "");
    CHECK(size == 8);
    CHECK(key.getValueSize(TEXT_OF("v")) == 8);
    CHECK(key.GetValueType(TEXT_OF("v")) == REG_QWORD);

    CHECK_FALSE(key.getValue(TEXT_OF("none"), data, size, type));
    CHECK_FALSE(key.getValue(TEXT_OF("none"), again, 8UL));
    expectWindowsError([&] { key.getValueSize(TEXT_OF("none")); }, ERROR_FILE_NOT_FOUND, "");
    expectWindowsError([&] { key.GetValueType(TEXT_OF("none")); }, ERROR_FILE_NOT_FOUND, "");

    CHECK(key.existsValue(TEXT_OF("v")));
    CHECK_FALSE(key.existsValue(TEXT_OF("")));
    key.deleteValue(TEXT_OF("v"));
    CHECK_FALSE(scratch.hasValue(L"", L"v"));
    expectWindowsError([&] { key.deleteValue(TEXT_OF("v")); }, ERROR_FILE_NOT_FOUND, "Can't delete registry value");
    expectWindowsError([&] { RegistryKey().existsValue(TEXT_OF("v")); }, ERROR_INVALID_HANDLE,
                       "Error in checking registry value existance");
}

TEMPLATE_TEST_CASE("RegistryValue: carries any value from one name to another", "", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    for (const StoredValue& value :
         {StoredValue{REG_SZ, {'a', 0}}, StoredValue{REG_BINARY, {}}, StoredValue{0x12345, {1, 2, 3}}}) {
        CAPTURE(value.type);
        scratch.store(L"", L"from", value.type, value.data);
        RegistryValue<TestType> holder;
        CHECK(key.getValue(TEXT_OF("from"), holder));
        CHECK(holder.getType() == value.type);
        key.setValue(TEXT_OF("to"), holder);
        CHECK(scratch.stored(L"", L"to") == value);
        CHECK_FALSE(key.getValue(TEXT_OF("none"), holder));
    }
}

TEMPLATE_TEST_CASE("RegistryValue: gives what it was made from, and refuses other types", "", char, wchar_t)
{
    using Value = RegistryValue<TestType>;
    const Value number(0x04030201UL);
    CHECK((number.getDWord() == 0x04030201 && number.getQWord() == 0x04030201));
    CHECK(number == Value(Bytes{1, 2, 3, 4}.data(), 4, REG_DWORD));
    const Value text(TEXT_OF("text"), REG_EXPAND_SZ);
    CHECK(text.getString() == TEXT_OF("text"));
    CHECK(text.getSize() == 5 * sizeof(TestType));
    CHECK(Value(listOf<TestType>({"a", "bc"})).getStrings() == listOf<TestType>({"a", "bc"}));
    expectError<std::runtime_error>([&] { text.getDWord(); }, wrongDWordType);
    expectError<std::runtime_error>([&] { Value(number.getData(), 3, REG_DWORD).getDWord(); }, wrongDWordSize);
    CHECK_THROWS_AS(number.getString(), WindowsError);
    CHECK_THROWS_AS(number.getStrings(), WindowsError);
}
