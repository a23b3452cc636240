// A block in a text file: its camera, its images, and points on the ground.
//
//     camera F WIDTH HEIGHT               focal length and size of the images, in metres
//     image X Y Z PHI OMEGA KAPPA         projection centre in metres, angles in radians
//     point X Y Z
//     bad IMAGE POINT DX DY               an error of a measurement, in metres on the image
//
// Images and points are numbered from 0 in their order. Lines that begin with # are comments.
#pragma once

#include <zyn/camera.h>

#include <string>
#include <vector>

struct BadMeasurement {
    int image = 0;
    int point = 0;
    zyn::XPnt2d error;
};

struct BlockFile {
    double focalLength = 0;
    double width = 0;
    double height = 0;
    std::vector<zyn::zynCamOutParam> images;
    std::vector<zyn::XPnt3d> points;
    std::vector<BadMeasurement> bad;
};

/// Throws a Failure that names the file and the line.
BlockFile readBlock(const std::string& path);
