#include "Test.h"

#include <tarn/RegistryTransaction.h>

#include "ScratchKey.h"

TEST_CASE("RegistryTransaction: all counts with the commit, or the platform has none and says so")
{
    const ScratchKey scratch;
    if (!RegistryTransaction::isAvailable()) {
        CHECK(isWine());
        CHECK_THROWS_AS(RegistryTransaction(), WindowsError);
        return;
    }
    scratch.storeText(L"old", L"", L"");
    for (const bool commits : {false, true}) {
        RegistryTransaction transaction;
        transaction.createKey(scratch, L"new").setValue(L"Width", 640);
        transaction.deleteKey(scratch, L"old");
        CHECK(transaction.openKey(scratch, L"new").getDWordValue(L"Width") == 640);
        CHECK((!scratch.hasKey(L"new") && scratch.hasKey(L"old")));
        if (commits)
            transaction.commit();
    }
    CHECK((scratch.hasValue(L"new", L"Width") && !scratch.hasKey(L"old")));
}
