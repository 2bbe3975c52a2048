// SPDX-License-Identifier: MIT
// The program of the check in CMakeLists.txt, which is about what the linker says.
int main()
{
    return 0;
}
