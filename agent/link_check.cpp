// SPDX-License-Identifier: MIT
// The program of the link check in CMakeLists.txt: the test is whether it links.
int main()
{
    return 0;
}
