#pragma once

#include <sys/stat.h>

namespace vellix {
namespace gesture {

/// Makes a new file as accessible as another one: owner, group, access list, extended attributes of users and, last,
/// the mode. `status` is that of `from`. Returns 0, or the error that left the files different: only a
/// privileged process can give a file away, for example.
///
/// A file of another owner may become the caller's if the old owner keeps its access through the group or others' bits.
int copyPermissions(int from, const struct stat &status, int to);

/// Whether an error means "not permitted" or "not supported" rather than a failure.
bool isRefusal(int error);

}
}
