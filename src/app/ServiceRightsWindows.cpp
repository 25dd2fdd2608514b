#include "app/ServiceRightsWindows.h"

#include "base/System.h"
#include "base/WindowsApi.h"

#include <string>
#include <vector>

#include <aclapi.h>

namespace tarvin {

namespace {

// By the account's number: the calls that take a name do not say which name they do not know.
Result<std::vector<BYTE>> AccountId(const KelText& account) {
    const std::wstring name(account.begin(), account.end());
    std::vector<BYTE> id(SECURITY_MAX_SID_SIZE);
    std::wstring domain(256, L'\0');
    auto idSize = static_cast<DWORD>(id.size());
    auto domainUnits = static_cast<DWORD>(domain.size());
    SID_NAME_USE kind = SidTypeUnknown;
    if (!::LookupAccountNameW(nullptr, name.c_str(), id.data(), &idSize, domain.data(), &domainUnits, &kind))
        return LastSystemError();
    return id;
}

}

Result<> GrantFolderRights(const std::filesystem::path& folder, const KelText& account, FolderRights rights) {
    std::wstring path = folder.native();
    auto id = AccountId(account);
    if (!id)
        return id.Reason();
    ACL* present = nullptr; // part of `descriptor`
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    DWORD error = ::GetNamedSecurityInfoW(path.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                          &present, nullptr, &descriptor);
    if (error != ERROR_SUCCESS)
        return Error{SystemErrorText(error)};
    const DWORD use = FILE_GENERIC_READ | FILE_GENERIC_EXECUTE;
    EXPLICIT_ACCESSW entry = {};
    entry.grfAccessPermissions = rights == FolderRights::Use ? use : use | FILE_GENERIC_WRITE | DELETE;
    entry.grfAccessMode = GRANT_ACCESS;
    entry.grfInheritance = SUB_CONTAINERS_AND_OBJECTS_INHERIT;
    ::BuildTrusteeWithSidW(&entry.Trustee, id->data());
    ACL* extended = nullptr;
    error = ::SetEntriesInAclW(1, &entry, present, &extended);
    if (error == ERROR_SUCCESS) {
        error = ::SetNamedSecurityInfoW(path.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                        extended, nullptr);
        ::LocalFree(extended);
    }
    ::LocalFree(descriptor);
    return error == ERROR_SUCCESS ? Result<>() : Error{SystemErrorText(error)};
}

}
