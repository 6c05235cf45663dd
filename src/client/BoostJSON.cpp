// Boost.JSON itself, for the one program that doesn't link its library.
#include <boost/json/src.hpp>
