#include <catch2/catch.hpp>

#include <tarn/RegistryKey.h>
#include <tarn/RegistryValue.h>

#include "Expect.h"
#include "ScratchKey.h"
#include "TextOf.h"

#include <atomic>
#include <stdexcept>
#include <thread>

using support::bytesOf;
using support::expectError;
using support::expectWindowsError;
using support::ScratchKey;
using support::StoredValue;
using tarn::BasicString;
using tarn::RegistryKey;
using tarn::RegistryValue;

namespace {
using Bytes = std::vector<unsigned char>;

const char wrongDWordType[] = "Can't read DWORD value from registry with type other than REG_DWORD_LITTLE_ENDIAN, "
                              "REG_DWORD_BIG_ENDIAN or REG_BINARY";
const char wrongDWordSize[] = "Can't read DWORD from registry value with size != sizeof(DWORD)";

template <class Ch> std::list<BasicString<Ch>> listOf(std::initializer_list<const char*> texts)
{
    std::list<BasicString<Ch>> list;
    for (const char* text : texts)
        list.emplace_back(text);
    return list;
}
} // namespace

TEMPLATE_TEST_CASE("RegistryKey: DWORDs of the three types are read as their bytes lie", "[registry]", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    for (const unsigned long type : {REG_DWORD, REG_DWORD_BIG_ENDIAN, REG_BINARY}) {
        scratch.store(L"", L"v", type, {0, 0, 1, 2});
        CHECK(key.getDWordValue(TEXT_OF("v")) == 0x02010000);
    }
}

TEMPLATE_TEST_CASE("RegistryKey: a missing DWORD is false, or an error, and other values are refused", "[registry]",
                   char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    unsigned long value = 7;
    CHECK_FALSE(key.getValue(TEXT_OF("missing"), value));
    expectWindowsError([&] { key.getDWordValue(TEXT_OF("missing")); }, ERROR_FILE_NOT_FOUND, "");
    scratch.store(L"", L"3", REG_BINARY, {1, 2, 3});
    scratch.store(L"", L"0", REG_DWORD, {});
    scratch.store(L"", L"8", REG_BINARY, Bytes(8));
    scratch.store(L"", L"none", REG_NONE, {1, 2, 3, 4});
    expectError<std::runtime_error>([&] { key.getValue(TEXT_OF("3"), value); }, wrongDWordSize);
    expectError<std::runtime_error>([&] { key.getValue(TEXT_OF("0"), value); }, wrongDWordSize);
    expectError<std::runtime_error>([&] { key.getDWordValue(TEXT_OF("none")); }, wrongDWordType);
    expectWindowsError([&] { key.getValue(TEXT_OF("8"), value); }, ERROR_MORE_DATA, "Can't query DWORD registry value");
    CHECK(value == 7);
}

TEMPLATE_TEST_CASE("RegistryKey: texts are read up to their first zero, with and without terminator", "[registry]",
                   char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    const auto read = [&](unsigned long type, const Bytes& data) {
        scratch.store(L"", L"v", type, data);
        return key.getStringValue(TEXT_OF("v"));
    };
    CHECK(read(REG_SZ, bytesOf(L"text")) == TEXT_OF("text"));
    CHECK(read(REG_EXPAND_SZ, bytesOf(L"%windir%")) == TEXT_OF("%windir%"));
    CHECK(read(REG_SZ, {'a', 0, 'b', 0}) == TEXT_OF("ab"));
    CHECK(read(REG_SZ, {'a', 0, 'b', 0, 'c'}).left(2) == TEXT_OF("ab"));
    CHECK(read(REG_SZ, {'a', 0, 0, 0, 'b', 0}) == TEXT_OF("a"));
    CHECK(read(REG_SZ, {0, 0}).size() == 0);
    CHECK(read(REG_SZ, {}).size() == 0);
    CHECK(read(REG_SZ, bytesOf(std::wstring(100000, L'x'))) == BasicString<TestType>(100000, TestType('x')));
    scratch.storeText(L"", nullptr, L"default");
    CHECK(key.getStringValue(TEXT_OF("")) == TEXT_OF("default"));
}

TEMPLATE_TEST_CASE("RegistryKey: a missing text and a wrong type have their own messages", "[registry]", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    scratch.store(L"", L"number", REG_DWORD, {1, 2, 3, 4});
    expectWindowsError([&] { key.getStringValue(TEXT_OF("none")); }, ERROR_FILE_NOT_FOUND, "Registry value not found");
    expectWindowsError([&] { key.getStringValue(TEXT_OF("number")); }, ERROR_UNSUPPORTED_TYPE,
                       "Wrong value type. Expected REG_SZ or REG_EXPAND_SZ");
    expectWindowsError([&] { RegistryKey().getStringValue(TEXT_OF("number")); }, ERROR_INVALID_HANDLE, "");
    std::list<BasicString<TestType>> strings;
    expectWindowsError([&] { key.getValue(TEXT_OF("number"), strings); }, ERROR_UNSUPPORTED_TYPE,
                       "Wrong value type. Expected REG_MULTI_SZ");
}

TEST_CASE("RegistryKey: a text that grows while it is read comes whole", "[registry]")
{
    const ScratchKey scratch;
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
        } catch (const tarn::WindowsError&) {
            ++torn;
        }
    }
    done = true;
    writer.join();
    CHECK(torn == 0);
}

TEMPLATE_TEST_CASE("RegistryKey: multi-strings are read with any or no terminators", "[registry]", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    auto strings = listOf<TestType>({"before"});
    CHECK_FALSE(key.getValue(TEXT_OF("none"), strings));
    CHECK(strings == listOf<TestType>({"before"}));

    const auto read = [&](const Bytes& data) {
        scratch.store(L"", L"v", REG_MULTI_SZ, data);
        CHECK(key.getValue(TEXT_OF("v"), strings));
        return strings;
    };
    const auto two = listOf<TestType>({"a", "bc"});
    CHECK(read({'a', 0, 0, 0, 'b', 0, 'c', 0, 0, 0, 0, 0}) == two);
    CHECK(read({'a', 0, 0, 0, 'b', 0, 'c', 0, 0, 0}) == two);
    CHECK(read({'a', 0, 0, 0, 'b', 0, 'c', 0}) == two);
    CHECK(read({'a', 0, 0, 0, 'b', 0, 'c', 0, 0, 0, 0, 0, 'd', 0, 0, 0, 0, 0}) == two);
    CHECK(read({0, 0}).empty());
    CHECK(read({}).empty());
}

TEMPLATE_TEST_CASE("RegistryKey: what is written is what the platform finds", "[registry]", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    const auto stored = [&] { return scratch.stored(L"", L"v"); };
    key.setValue(TEXT_OF("v"), 0x04030201UL);
    CHECK(stored() == StoredValue{REG_DWORD, {1, 2, 3, 4}});
    key.setValue(TEXT_OF("v"), 0);
    CHECK(stored() == StoredValue{REG_DWORD, {0, 0, 0, 0}});
    key.setValue(TEXT_OF("v"), TEXT_OF("text"));
    CHECK(stored() == StoredValue{REG_SZ, bytesOf(L"text")});
    key.setValue(TEXT_OF("v"), TEXT_OF(""));
    CHECK(stored() == StoredValue{REG_SZ, {0, 0}});
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

TEMPLATE_TEST_CASE("RegistryKey: raw reads tell size and type, also of what does not fit", "[registry]", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    scratch.store(L"", L"v", REG_QWORD, {1, 2, 3, 4, 5, 6, 7, 8});
    unsigned char data[8] = {};
    unsigned long size = sizeof data;
    unsigned long type = REG_NONE;
    CHECK(key.getValue(TEXT_OF("v"), data, size, type));
    CHECK(size == 8);
    CHECK(type == REG_QWORD);
    CHECK(data[7] == 8);
    size = 4;
    expectWindowsError([&] { key.getValue(TEXT_OF("v"), data, size, type); }, ERROR_MORE_DATA, "");
    CHECK(size == 8);
    CHECK_FALSE(key.getValue(TEXT_OF("none"), data, size, type));

    unsigned char again[8] = {};
    CHECK(key.getValue(TEXT_OF("v"), again, 8UL));
    CHECK(again[0] == 1);
    CHECK_FALSE(key.getValue(TEXT_OF("none"), again, 8UL));

    CHECK(key.getValueSize(TEXT_OF("v")) == 8);
    CHECK(key.GetValueType(TEXT_OF("v")) == REG_QWORD);
    expectWindowsError([&] { key.getValueSize(TEXT_OF("none")); }, ERROR_FILE_NOT_FOUND, "");
    expectWindowsError([&] { key.GetValueType(TEXT_OF("none")); }, ERROR_FILE_NOT_FOUND, "");
}

TEMPLATE_TEST_CASE("RegistryKey: existsValue and deleteValue", "[registry]", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    scratch.storeText(L"", L"v", L"text");
    CHECK(key.existsValue(TEXT_OF("v")));
    CHECK_FALSE(key.existsValue(TEXT_OF("")));
    key.deleteValue(TEXT_OF("v"));
    CHECK_FALSE(scratch.hasValue(L"", L"v"));
    expectWindowsError([&] { key.deleteValue(TEXT_OF("v")); }, ERROR_FILE_NOT_FOUND, "Can't delete registry value");
    expectWindowsError([&] { RegistryKey().existsValue(TEXT_OF("v")); }, ERROR_INVALID_HANDLE,
                       "Error in checking registry value existance");
}

TEMPLATE_TEST_CASE("RegistryValue: carries any value from one name to another", "[registry]", char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    for (const StoredValue& value :
         {StoredValue{REG_SZ, bytesOf(L"text")}, StoredValue{REG_SZ, {'a', 0}}, StoredValue{REG_BINARY, {}},
          StoredValue{REG_QWORD, {1, 2, 3, 4, 5, 6, 7, 8}}, StoredValue{0x12345, {1, 2, 3}}}) {
        CAPTURE(value.type);
        scratch.store(L"", L"from", value.type, value.data);
        RegistryValue<TestType> holder;
        CHECK(key.getValue(TEXT_OF("from"), holder));
        CHECK(holder.getType() == value.type);
        key.setValue(TEXT_OF("to"), holder);
        CHECK(scratch.stored(L"", L"to") == value);
        CHECK_FALSE(key.getValue(TEXT_OF("none"), holder));
        CHECK(holder.getType() == value.type);
    }
}

TEMPLATE_TEST_CASE("RegistryValue: gives what it was made from, and refuses other types", "[registry]", char, wchar_t)
{
    using Value = RegistryValue<TestType>;
    const Value number(0x04030201UL);
    CHECK(number.getDWord() == 0x04030201);
    CHECK(number == Value(Bytes{1, 2, 3, 4}.data(), 4, REG_DWORD));
    const Value text(TEXT_OF("text"), REG_EXPAND_SZ);
    CHECK(text.getString() == TEXT_OF("text"));
    CHECK(text.getSize() == 5 * sizeof(TestType));
    CHECK(Value(listOf<TestType>({"a", "bc"})).getStrings() == listOf<TestType>({"a", "bc"}));
    expectError<std::runtime_error>([&] { text.getDWord(); }, wrongDWordType);
    expectError<std::runtime_error>([&] { Value(number.getData(), 3, REG_DWORD).getDWord(); }, wrongDWordSize);
    CHECK_THROWS_AS(number.getString(), tarn::WindowsError);
    CHECK_THROWS_AS(number.getStrings(), tarn::WindowsError);
}
