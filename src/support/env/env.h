// Named settings: read from the process environment, or else from the per-machine store (the
// registry on Windows, a directory tree elsewhere); written so that the Win32 environment, the
// C runtime's environment and a second copy of this library in the process see one value.
#pragma once

extern "C" {

// Flags of a look-up result.
enum {
  G_SYS_ENV_ALLOCATED = 1, // the text must be released with G_sys_free_env_value
  G_SYS_ENV_FROM_PROCESS = 2, // the runtime's own text
  G_SYS_ENV_FROM_STORE = 4 // read from the per-machine store
};

// Looks a name up: flags 2 from the process environment, 5 from the store, 0 and a null value
// when absent. Either output may be null. Returns 0.
int G_sys_inq_env(const char *name, char **value, int *flags);
// The value alone (a value from the store is never released).
char *G_sys_getenv(const char *name);
// Frees and clears the value when flags has bit 0 and the value is not null.
int G_sys_free_env_value(char **value, int flags);
// Sets a name (a null value removes it), also through vldSetEnvVELD of a GL library present in
// the process. Returns 0, or -1 when the runtime refused.
int G_sys_setenv(const char *name, const char *value);
// A negative length means the text's own length.
int GP_sys_setenv_counted(int nameLength, const char *name, int valueLength, const char *value);
// Removes a name, or with allowWildcard every name that begins with the text before a final
// '*'. Returns the number counted.
int GP_sys_unsetenv_full(const char *name, int allowWildcard, int verbose);

} // extern "C"

// Test hooks: forget the store's search and the vldSetEnvVELD look-up, so that the next call
// starts afresh; and the counts of store opens and of texts handed to the runtime's putenv.
void GP_sys_env_reset(void);
int GP_sys_env_store_open_count(void);
int GP_sys_env_putenv_count(void);

// Platform layer.
// Opens a key of the per-machine store by its path ("SOFTWARE\\...\\Env"); null if absent.
void *GP_env_store_open(const char *keyPath);
// Reads a value as text (a 32-bit number in decimal), allocated with G_malloc; null if absent.
char *GP_env_store_read(void *key, const char *name);
void GP_env_store_close(void *key);
// Sets (value null: deletes) the operating system's own copy of the variable. 0 or -1.
int GP_env_native_set(const char *name, const char *value);
// Hands a "name=value" text to the runtime; 0 or -1.
int GP_env_putenv(char *text);
// Removes a name from the runtime's environment.
int GP_env_remove(const char *name);
// The runtime's environment array.
char **GP_env_environ(void);
