#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <system_error>
#include <windows.h>

#include "textio/channel/file_name.h"
#include "textio/channel/file_system.h"

namespace varpre::file_system {
namespace {

constexpr DWORD share_with_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// The errno of a code of this system, minus.
int failure(DWORD error) {
  const std::error_condition condition =
      std::system_category().default_error_condition(static_cast<int>(error));
  return condition.category() == std::generic_category() ? -condition.value() : -EIO;
}

int result_of(BOOL done) {
  return done != 0 ? 0 : failure(::GetLastError());
}

HANDLE open_handle(const std::string& name, DWORD access, DWORD creation, DWORD flags) {
  return ::CreateFileW(path_of(name).c_str(), access, share_with_all, nullptr, creation,
                       FILE_ATTRIBUTE_NORMAL | flags, nullptr);
}

// A descriptor that takes over a handle.
int descriptor_of(HANDLE handle, int flags) {
  if (handle == INVALID_HANDLE_VALUE) return failure(::GetLastError());
  const int number =
      ::_open_osfhandle(reinterpret_cast<std::intptr_t>(handle), flags | _O_BINARY | _O_NOINHERIT);
  if (number >= 0) return number;
  ::CloseHandle(handle);
  return -EMFILE;
}

HANDLE handle_of(int descriptor) {
  return reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor));
}

// Other files than links may be reparse points too: those that are not on this machine yet, for instance.
bool is_link(HANDLE handle) {
  FILE_ATTRIBUTE_TAG_INFO info{};
  return ::GetFileInformationByHandleEx(handle, FileAttributeTagInfo, &info, sizeof info) != 0 &&
         (info.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (info.ReparseTag == IO_REPARSE_TAG_SYMLINK || info.ReparseTag == IO_REPARSE_TAG_MOUNT_POINT);
}

std::uint64_t joined(DWORD high, DWORD low) {
  return std::uint64_t{high} << 32 | low;
}

Status::Kind kind_of(HANDLE handle, DWORD attributes) {
  if (is_link(handle)) return Status::Kind::link;
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Status::Kind::directory : Status::Kind::regular;
}

int status_of_handle(HANDLE handle, Status& status) {
  constexpr std::uint64_t second = 10'000'000;         // in the units of this system's times,
  constexpr std::uint64_t beginning = 11'644'473'600;  // which count from 1601
  status = {};
  if (::GetFileType(handle) != FILE_TYPE_DISK) return 0;
  BY_HANDLE_FILE_INFORMATION info{};
  if (::GetFileInformationByHandle(handle, &info) == 0) return failure(::GetLastError());
  const std::uint64_t written =
      joined(info.ftLastWriteTime.dwHighDateTime, info.ftLastWriteTime.dwLowDateTime);
  status = {.kind = kind_of(handle, info.dwFileAttributes),
            .size = joined(info.nFileSizeHigh, info.nFileSizeLow),
            .is_protected = (info.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0,
            .is_own = true,  // whose it is does not tell who may remove it here
            .written = static_cast<std::time_t>(written / second) - static_cast<std::time_t>(beginning),
            .identity = {info.dwVolumeSerialNumber, joined(info.nFileIndexHigh, info.nFileIndexLow)}};
  return 0;
}

int status_of(const std::string& name, DWORD flags, Status& status) {
  const HANDLE handle =
      open_handle(name, FILE_READ_ATTRIBUTES, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | flags);
  if (handle == INVALID_HANDLE_VALUE) return failure(::GetLastError());
  const int result = status_of_handle(handle, status);
  ::CloseHandle(handle);
  return result;
}

// The C library counts bytes as unsigned int.
unsigned piece_of(std::size_t size) {
  return static_cast<unsigned>(std::min(size, std::size_t{1} << 20));
}

}  // namespace

int status_of(int descriptor, Status& status) {
  return status_of_handle(handle_of(descriptor), status);
}

int status_of_name(const std::string& name, Status& status) {
  return status_of(name, FILE_FLAG_OPEN_REPARSE_POINT, status);
}

int status_of_target(const std::string& name, Status& status) {
  return status_of(name, 0, status);
}

// Directories too (the flag is for them): that they cannot be read is found when they are.
int open_to_read(const std::string& name) {
  return descriptor_of(open_handle(name, GENERIC_READ, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS), _O_RDONLY);
}

int create(const std::string& name, bool readable) {
  const DWORD access = GENERIC_WRITE | (readable ? GENERIC_READ : 0);
  return descriptor_of(open_handle(name, access, CREATE_NEW, 0), readable ? _O_RDWR : _O_WRONLY);
}

int create_nameless(const std::string& /*directory*/) {
  return -EOPNOTSUPP;
}

int give_name(int /*descriptor*/, const std::string& /*name*/) {
  return -EOPNOTSUPP;
}

int close(int descriptor) {
  return ::_close(descriptor) < 0 ? -errno : 0;
}

std::ptrdiff_t read(int descriptor, char* to, std::size_t size) {
  Status status;
  if (status_of(descriptor, status) == 0 && status.kind == Status::Kind::directory) return -EISDIR;
  const int count = ::_read(descriptor, to, piece_of(size));
  return count < 0 ? -errno : count;
}

std::ptrdiff_t write(int descriptor, const char* from, std::size_t size) {
  const int count = ::_write(descriptor, from, piece_of(size));
  return count < 0 ? -errno : count;
}

int sync(int descriptor) {
  return ::_commit(descriptor) < 0 ? -errno : 0;
}

int replace(const std::string& from, const std::string& name) {
  return result_of(::MoveFileExW(path_of(from).c_str(), path_of(name).c_str(),
                                 MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
}

int remove(const std::string& name) {
  return result_of(::DeleteFileW(path_of(name).c_str()));
}

}  // namespace varpre::file_system
