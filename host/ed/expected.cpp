#include "host/ed/expected.h"

namespace ed {

expected_answer& expected() {
    static expected_answer answer;
    return answer;
}

} // namespace ed
