#pragma once

// What is used of qpdf. Clang 14, which checks the sources, cannot read JSON.hh with libstdc++ 12
// (a vector of a class that is not complete yet); only the class's name is needed.
#ifdef __clang__
#define JSON_HH
class JSON;
#endif

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFMatrix.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>
