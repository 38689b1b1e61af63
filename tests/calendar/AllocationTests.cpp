#include <catch2/catch.hpp>

#include <tarn/GregorianCalendar.h>
#include <tarn/Windows.h>

#include "Zones.h"

#include <cstdlib>
#include <cstring>
#include <new>

using tarn::Calendar;

namespace {
int allocations = 0;

void* countedNew(std::size_t size)
{
    ++allocations;
    if (void* memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}
void* countedMalloc(std::size_t size)
{
    ++allocations;
    return std::malloc(size);
}

/// Counts what the library itself allocates: puts other functions into its table of imports.
class CountLibraryAllocations {
public:
    CountLibraryAllocations()
    {
        replace("_Znwj", reinterpret_cast<void*>(&countedNew), new_);
        replace("_Znwy", reinterpret_cast<void*>(&countedNew), new_);
        replace("malloc", reinterpret_cast<void*>(&countedMalloc), malloc_);
        allocations = 0;
    }
    CountLibraryAllocations(const CountLibraryAllocations&) = delete;
    CountLibraryAllocations& operator=(const CountLibraryAllocations&) = delete;
    ~CountLibraryAllocations()
    {
        restore(new_);
        restore(malloc_);
    }

private:
    struct Entry {
        void** slot = nullptr;
        void* original = nullptr;
    };

    static void write(void** slot, void* value)
    {
        DWORD protection;
        VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
        *slot = value;
        VirtualProtect(slot, sizeof *slot, protection, &protection);
    }

    static void restore(const Entry& entry)
    {
        if (entry.slot)
            write(entry.slot, entry.original);
    }

    static void replace(const char* name, void* function, Entry& entry)
    {
        char* const base = reinterpret_cast<char*>(GetModuleHandleW(L"Tarn++U.dll"));
        REQUIRE(base);
        const auto* headers =
            reinterpret_cast<IMAGE_NT_HEADERS*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
        const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        auto* import = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
        for (; import->Name; ++import) {
            auto* names = reinterpret_cast<IMAGE_THUNK_DATA*>(base + import->OriginalFirstThunk);
            auto* slots = reinterpret_cast<void**>(base + import->FirstThunk);
            for (; names->u1.AddressOfData; ++names, ++slots) {
                if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal))
                    continue;
                const auto* entryName = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
                if (std::strcmp(reinterpret_cast<const char*>(entryName->Name), name) == 0) {
                    entry = {slots, *slots};
                    write(slots, function);
                    return;
                }
            }
        }
    }

    Entry new_, malloc_;
};
} // namespace

TEST_CASE("GregorianCalendar: nothing but the searches allocates", "[calendar]")
{
    auto calendar = zones::on(2000, 0, 31, 12, 0, zones::north());
    CountLibraryAllocations counting;
    for (unsigned field = 0; field < Calendar::FieldCount; ++field) {
        calendar.set(field, 1);
        calendar.getTime();
        calendar.get(field);
        calendar.add(field, 3);
        calendar.roll(field, 1);
        calendar.setTime(951782400000);
    }
    CHECK(allocations == 0);
    calendar.getActualMaximum(Calendar::FieldYear);
    CHECK(allocations == 1); // The counting counts.
}
