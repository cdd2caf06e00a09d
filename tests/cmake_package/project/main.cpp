#include <cstdio>

#include "people.h"

int main() {
    for (int i = 0; i < kPeopleCount; ++i)
        std::printf("%s is %d\n", kPeople[i].name, kPeople[i].age);
}
