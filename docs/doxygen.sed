# Marks the comments of the public headers as what Doxygen reads: the first as that of the file, one
# behind a declaration as its own, and the others as those of what follows. Headlines stay as they are.
1 s|^/\*$|/** \\file|
s|^( *)/\* ----|&|
t
s|([;,]) +/\* |\1 /**< |
t
s|^(#define .*[^ ]) +/\* |\1 /**< |
t
s|^( *)/\*( .*)?$|\1/**\2|
# Parameters and results.
s|^ \* ([a-z_]+): | * \\param \1 |
s|Result:|\\return|
# Lists of names.
s|^ \*   ([A-Z_]+)  +| * - \\c \1: |
