// The formatting library's own code, compiled into the daemon: its shared object would bring the
// whole C++ library with it, which is more than all the rest of the daemon.

#include <fmt/format-inl.h>

FMT_BEGIN_NAMESPACE
namespace detail {

template auto thousands_sep_impl<char>(locale_ref) -> thousands_sep_result<char>;
template auto decimal_point_impl<char>(locale_ref) -> char;

}  // namespace detail
FMT_END_NAMESPACE
