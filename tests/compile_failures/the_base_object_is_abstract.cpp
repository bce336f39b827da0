// SPDX-License-Identifier: MIT
#include <reportbase/IRGObject.h>

class Half : public REPORTGENERATOR::IRGObject
{
#ifdef CORRECTED
public:
    bool HasData() const override;
    void Reset() override;
    void Check(bool flag) const override;
    void Check() const override;
    void GetXml(QXmlStreamWriter &writer) const override;
    bool GetBinary(QDataStream &stream, int tag, bool writeTag) const override;
    void SetBinary(QDataStream &stream, int length) override;

protected:
    void ProcessXmlStartElement(QXmlStreamReader &reader) override;
#endif
};

Half half;
