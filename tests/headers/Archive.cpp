#include <tarn/Archive.h>

class Node final : public tarn::Serializable {
public:
    void serialize(tarn::OutputStream& out) const override;
    void deserialize(tarn::InputStream& in) override;

private:
    tarn::BasicString<char> name_;
    tarn::ref_ptr<Node> next_;
};

#include "Archive.example"
