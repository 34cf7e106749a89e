// Functions of the library that are defined elsewhere in it.
#pragma once

// Of a namespace whose functions the library does not export. A declaration says so itself: where addresses
// are found through a table, as on i386, a call of anything else goes by it.
#define TS_INTERNAL [[gnu::visibility("hidden")]]
