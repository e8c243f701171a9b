# gdb reads this file only if ~/.config/gdb/gdbinit has: add-auto-load-safe-path PATH/OF/THIS/FOLDER
# wchar_t has 16 bits on every target.
set target-wide-charset UTF-16
