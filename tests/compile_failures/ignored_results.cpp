// SPDX-License-Identifier: MIT
#include <QDataStream>
#include <QFile>

#include <jobxml/TunerProperties.h>
#include <jobxml/Visit.h>
#include <reportbase/RepresentationSplitter.h>
#include <reportbase/SaveFile.h>

using REPORTGENERATOR::IRGObject;

// By value, because g++ 12 ignores the attribute if a virtual function is called through a reference.
void ignore(JobXml::TunerProperties object, const JobXml::TunerProperties constant, JobXml::MemberEditor member,
            REPORTGENERATOR::RepresentationSplitter splitter, const REPORTGENERATOR::ReadLimits limits,
            QDataStream &stream, QFile &file, const QString &text, QByteArray &bytes, const QByteArray &constantBytes)
{
    object.SetXmlString(text, true); // warned
    object.LoadXml(text); // warned
    object.LoadXml(&file); // warned
    object.SaveXml(text); // warned
    object.SetBinaryRepresentation(bytes); // warned
    object.SetBinaryRepresentation(constantBytes); // warned
    object.SetBinaryRepresentation(stream); // warned
    object.SetBinaryRepresentation(bytes, limits); // warned
    object.SetBinaryRepresentation(stream, limits); // warned
    object.LoadBinary(text); // warned
    object.LoadBinary(&file); // warned
    object.LoadBinary(text, limits); // warned
    object.LoadBinary(&file, limits); // warned
    object.SaveBinary(text); // warned
    object.SaveCompressedBinary(text, 9); // warned
    object.GetXmlString(); // warned
    constant.GetXmlString(); // warned
    object.GetBinaryRepresentationAsQByteArray(); // warned
    constant.GetBinaryRepresentationAsQByteArray(); // warned
    object.GetCompressedBinaryRepresentationAsQByteArray(9); // warned
    constant.GetCompressedBinaryRepresentationAsQByteArray(9); // warned
    object.GetBinary(stream, 0, true); // warned
    object.IRGObject::GetBinary(stream, 0, true); // warned
    object.MergeRGObject(object); // warned
    object.IRGObject::MergeRGObject(object); // warned
    object.GetProblems(); // warned
    member.SetValue(text); // warned
    splitter.Take(); // warned
    REPORTGENERATOR::SizeOfRepresentation(bytes, 0); // warned
    REPORTGENERATOR::SaveFile(text, bytes); // warned
    REPORTGENERATOR::SaveFile(bytes, text, bytes); // warned
    REPORTGENERATOR::SaveFile(bytes, text, bytes, file); // warned
    REPORTGENERATOR::WriteAll(file, bytes); // warned
    JobXml::BandwidthSelection::fromXml(text); // warned
    JobXml::BandwidthSelection::fromBinary(bytes); // warned
    JobXml::Component::fromXml(text); // warned
    JobXml::Component::fromBinary(bytes); // warned
    JobXml::Node::fromXml(text); // warned
    JobXml::Node::fromBinary(bytes); // warned
    JobXml::SelectionItem::fromXml(text); // warned
    JobXml::SelectionItem::fromBinary(bytes); // warned
    JobXml::StartupModes::fromXml(text); // warned
    JobXml::StartupModes::fromBinary(bytes); // warned
    JobXml::StringItem::fromXml(text); // warned
    JobXml::StringItem::fromBinary(bytes); // warned
    JobXml::TunerProperties::fromXml(text); // warned
    JobXml::TunerProperties::fromBinary(bytes); // warned
    JobXml::ValueBoolean::fromXml(text); // warned
    JobXml::ValueBoolean::fromBinary(bytes); // warned
    JobXml::ValueFloat::fromXml(text); // warned
    JobXml::ValueFloat::fromBinary(bytes); // warned
    JobXml::ValueInt::fromXml(text); // warned
    JobXml::ValueInt::fromBinary(bytes); // warned
    JobXml::ValueInt64::fromXml(text); // warned
    JobXml::ValueInt64::fromBinary(bytes); // warned
    JobXml::ValueItem::fromXml(text); // warned
    JobXml::ValueItem::fromBinary(bytes); // warned
    JobXml::ValueNumericFloat::fromXml(text); // warned
    JobXml::ValueNumericFloat::fromBinary(bytes); // warned
    JobXml::ValueNumericInt::fromXml(text); // warned
    JobXml::ValueNumericInt::fromBinary(bytes); // warned
    JobXml::ValueNumericInt64::fromXml(text); // warned
    JobXml::ValueNumericInt64::fromBinary(bytes); // warned
    JobXml::ValueSelection::fromXml(text); // warned
    JobXml::ValueSelection::fromBinary(bytes); // warned
    JobXml::ValueString::fromXml(text); // warned
    JobXml::ValueString::fromBinary(bytes); // warned
    JobXml::ValueStringList::fromXml(text); // warned
    JobXml::ValueStringList::fromBinary(bytes); // warned

    if (!object.LoadXml(text))
        return;
    static_cast<void>(object.SaveXml(text));
}
