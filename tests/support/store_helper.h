// Creates and removes keys of the per-machine store for the tests: the registry on Windows, the
// directory tree under $ZVGL_REGISTRY_ROOT elsewhere. A key is named by its version part:
// "4.3" is "SOFTWARE\Cordwain\Kestrel SDK\4.3\Env", "" is "...\Kestrel SDK\Env".
#pragma once

// Removes all three keys the library searches.
void store_clear();
void store_put_text(const char *version, const char *name, const char *text);
void store_put_number(const char *version, const char *name, unsigned value);
