#ifndef DEVICEREPORT_H
#define DEVICEREPORT_H

class CDeviceList;
class QTextStream;

//! Writes \a list as a tree: a line for the list, for each device and for each of its sub-devices.
//! Fields that are not set are left out.
void printTree(const CDeviceList &list, QTextStream &out);

//! Writes \a list as a JSON object with all fields of the devices and sub-devices.
void printJson(const CDeviceList &list, QTextStream &out);

#endif // DEVICEREPORT_H
