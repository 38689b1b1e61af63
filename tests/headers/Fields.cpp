#include <tarn/BasicString.h>
#include <tarn/Fields.h>
#include <tarn/Serializable.h>

class Town final : public tarn::Serializable {
public:
#include "Fields.example"

private:
    int x = 0;
    int y = 0;
    tarn::BasicString<char> name;
};
