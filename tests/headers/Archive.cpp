#include <tarn/Archive.h>

class Node final : public tarn::Serializable {
public:
    void serialize(tarn::OutputStream& out) const override;
    void deserialize(tarn::InputStream& in) override;

private:
    tarn::BasicString<char> name_;
    tarn::ref_ptr<Node> next_;
};

class Leaf final : public tarn::Serializable {
public:
    static constexpr unsigned int classVersion = 2;
    void serialize(tarn::OutputStream& out) const override;
    void deserialize(tarn::InputStream& in) override;

private:
    tarn::BasicString<char> name_;
    int colour_ = 0;
};

#include "Archive.example"
