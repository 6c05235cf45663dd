// Asio's own code, compiled here once instead of in every file that includes one of its headers.
#include <boost/asio/impl/src.hpp>
