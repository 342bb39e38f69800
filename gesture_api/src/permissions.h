#pragma once

#include <sys/stat.h>

namespace vellix {
namespace gesture {

/// Makes a new file as accessible as another one: owner, group, access list, extended attributes of users and, last,
/// the mode. `status` is that of `from`. Returns 0, or the error because of which the files are not alike: whoever is
/// not the owner, for example, can not give a file away.
///
/// A file of another owner may become the caller's if the old owner then reaches it through its group or as anybody.
int copyPermissions(int from, const struct stat &status, int to);

/// Whether an error says that something is not allowed or not known here, rather than that it has failed.
bool isRefusal(int error);

}
}
